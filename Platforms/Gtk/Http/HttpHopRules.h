#pragma once

#include <vector>

#include "Services/CookieStore.h"
#include "Services/HttpClient.h"

namespace tavo::gtk {

// What may travel on one hop of an exchange, and what a redirect makes of the request.

// Whether an answer with this status and a "Location" header sends the request on.
[[nodiscard]] bool isRedirect(int status);

// Turns `request` into what it becomes after a redirect with `status`: 303 always ends in a GET
// (a HEAD stays one), 301 and 302 turn a POST into one as every browser does, 307 and 308 repeat
// it. A request that became a GET has lost its body and the headers that described it.
void applyRedirect(HttpRequest& request, int status);

// The headers of `request` on the hop to `url`, its cookies included. "Cookie" and "Authorization"
// of the request itself go only to the host of `request.url`, and never from https down to http.
[[nodiscard]] std::vector<HttpHeader> hopHeaders(const HttpRequest& request, const Url& url,
                                                 const CookieStore& cookies);

}  // namespace tavo::gtk
