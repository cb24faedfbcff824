#pragma once

#include <string_view>

#include <tavo/Url.h>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// `url` as GLib and libsoup want it. Null for anything but http and https with a host, and for a
// URL that the two parsers would read differently or whose host hides control characters in
// escapes: such a host could smuggle lines into the request.
[[nodiscard]] GUriPtr httpUri(const Url& url);

// Where the "Location" header of an answer from `from` leads, whatever its scheme. Relative
// references are resolved (RFC 3986); empty when the text is no URL.
[[nodiscard]] Url redirectTarget(const Url& from, std::string_view location);

}  // namespace tavo::gtk
