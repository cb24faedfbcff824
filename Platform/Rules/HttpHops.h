#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Services/CookieStore.h"
#include "Services/HttpClient.h"

namespace tavo {

// The hops of one exchange: what travels on each of them, and what an answer makes of the request.
// A platform sends what `request` says, hands in the head of what comes back, and does as it is
// told. One thread at a time.
class HttpHops {
 public:
  enum class Next {
    deliver,  // this is the answer; its body is wanted
    follow,   // the body is of no use: send `request` again
    giveUp,   // one redirect too many
  };

  HttpHops(HttpRequest request, int redirectLimit);

  // Where the hop that is due leads.
  [[nodiscard]] const Url& url() const { return url_; }

  // The request of that hop with the headers that leave, its cookies included; none when its URL is
  // nothing that HTTP can reach.
  //
  // Stored cookies are those of the hop's own URL, so one that an earlier hop has set is there.
  // "Cookie" and "Authorization" of the request itself go only to the host they were made for, and
  // never from https down to http.
  [[nodiscard]] std::optional<HttpRequest> request(const CookieStore& cookies, Date now) const;

  // The head of an answer to that hop has arrived. Stores its cookies before anything else.
  [[nodiscard]] Next take(const HttpResponse& head, CookieStore& cookies);

 private:
  [[nodiscard]] std::vector<HttpHeader> headers(const CookieStore& cookies, Date now) const;

  HttpRequest request_;  // as the redirects so far have left it; its URL is the first one
  Url url_;
  int redirectsLeft_;
};

// Whether an answer with this status and a "Location" header sends the request on.
[[nodiscard]] bool isRedirect(int status);

// Turns `request` into what it becomes after a redirect with `status`: 303 always ends in a GET
// (a HEAD stays one), 301 and 302 turn a POST into one as every browser does, 307 and 308 repeat
// it. A request that became a GET has lost its body and the headers that described it.
void applyRedirect(HttpRequest& request, int status);

// Whether HTTP can be asked for `url`: http or https, and a host without blanks or control
// characters, escaped ones included. Such a host could smuggle lines into the request.
[[nodiscard]] bool isHttpTarget(const Url& url);

// The type of a "Content-Type" header without parameters, in lower case.
[[nodiscard]] std::string mimeTypeOf(std::string_view contentType);

}  // namespace tavo
