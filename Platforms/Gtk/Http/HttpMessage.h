#pragma once

#include <libsoup/soup.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Gtk/GPtr.h"
#include "Services/HttpClient.h"

namespace tavo::gtk {

// Our records and libsoup's messages, turned into each other.

// The message for one hop of `request` to `url` with exactly `headers`; null when `url` is nothing
// that can be sent to. A header with control characters is left out: it would be the start of a
// header of somebody else's.
[[nodiscard]] GPtr<SoupMessage> makeMessage(const HttpRequest& request, const Url& url,
                                            const std::vector<HttpHeader>& headers);

// The answer's head, with an empty body.
[[nodiscard]] HttpResponse responseHead(SoupMessage* message, const Url& url);

// The length that the answer announces for its body as it travels; none when it does not, or when
// answers of its kind have no body.
[[nodiscard]] std::optional<std::uint64_t> announcedLength(SoupMessage* message);

// Whether the connection ended before the announced length. libsoup itself overlooks that where the
// server had said that it would close.
[[nodiscard]] bool isCutOff(SoupMessage* message);

// The type of a "Content-Type" header without parameters, in lower case.
[[nodiscard]] std::string mimeTypeOf(std::string_view contentType);

}  // namespace tavo::gtk
