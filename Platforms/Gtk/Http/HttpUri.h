#pragma once

#include <tavo/Url.h>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// `url` as GLib and libsoup want it. Null for what HTTP cannot be asked for, and for a URL that the
// two parsers would read differently.
[[nodiscard]] GUriPtr httpUri(const Url& url);

}  // namespace tavo::gtk
