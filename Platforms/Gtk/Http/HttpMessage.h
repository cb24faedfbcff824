#pragma once

#include <libsoup/soup.h>

#include <cstdint>
#include <optional>

#include "Gtk/GPtr.h"
#include "Services/HttpClient.h"

namespace tavo::gtk {

// Our records and libsoup's messages, turned into each other.

// The message for one hop; null when its URL is nothing that can be sent to.
[[nodiscard]] GPtr<SoupMessage> makeMessage(const HttpRequest& hop);

// The answer's head, with an empty body.
[[nodiscard]] HttpResponse responseHead(SoupMessage* message, const Url& url);

// The length that the answer announces for its body as it travels; none when it does not, or when
// answers of its kind have no body.
[[nodiscard]] std::optional<std::uint64_t> announcedLength(SoupMessage* message);

// Whether the connection ended before the announced length. libsoup itself overlooks that where the
// server had said that it would close.
[[nodiscard]] bool isCutOff(SoupMessage* message);

}  // namespace tavo::gtk
