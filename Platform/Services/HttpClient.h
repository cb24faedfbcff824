#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Date.h>
#include <tavo/Error.h>
#include <tavo/Url.h>

#include "Values/Cookie.h"

namespace tavo {

struct HttpHeader {
  std::string name;
  std::string value;
  friend bool operator==(const HttpHeader&, const HttpHeader&) = default;
};

enum class CachePolicy { useProtocolCachePolicy = 0, reloadIgnoringLocalCacheData = 1 };

// Where a completion is called.
enum class CompletionThread { main, background };

// How the exchange of a request treats stored cookies.
enum class CookieHandling {
  // On every hop the cookies that the shared store has for its URL are attached, and after them
  // the extra cookies of the request. Without extra cookies, a "Cookie" header of the request's own
  // replaces the stored ones.
  attachStored,
  // The request's own "Cookie" header, if any, is all that is ever sent, and to its own host only.
  onlyOwnHeader,
};

// What a request is for. A platform keeps tracking apart from the rest, with connections of its
// own: hundreds of pings must neither delay an ad nor be delayed by one.
enum class TrafficClass { content, tracking };

struct HttpRequest {
  std::string method = "GET";
  Url url{};
  std::vector<HttpHeader> headers{};  // names compare without letter case
  std::string body{};
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;
  CookieHandling cookies = CookieHandling::attachStored;
  // What the caller adds to the stored cookies. Each goes where its domain and path say, so one
  // that is made for the first host does not travel to another.
  std::vector<Cookie> extraCookies{};
  Seconds idleTimeout{60};  // nothing arrives for so long
  Seconds deadline{0};      // the whole exchange with all redirects; 0: no bound of its own
  std::size_t maximumBodyBytes = 0;  // decoded; 0: no bound
  bool followsRedirects = true;
  CompletionThread completionThread = CompletionThread::main;
  TrafficClass traffic = TrafficClass::content;
  // The ad view that it is sent for, for the inspection; compared and never followed.
  const void* slot = nullptr;

  // The value of the header `name`, or null.
  [[nodiscard]] const std::string* header(std::string_view name) const;
  // Replaces the header `name`, or adds it.
  void setHeader(std::string_view name, std::string value);
};

struct HttpResponse {
  Url url;  // of the last hop
  int status = 0;
  std::vector<HttpHeader> headers;
  std::string mimeType;  // of "Content-Type", without parameters, in lower case; may be empty
  std::string body;      // decoded

  [[nodiscard]] const std::string* header(std::string_view name) const;
};

// What came of an exchange. After a failure the response is there when headers had arrived.
struct HttpResult {
  std::optional<HttpResponse> response;
  std::optional<Error> error;
  // The server of the request's own URL answered over a connection that carries many requests at a
  // time, as HTTP/2 does. The client keeps to the number that the server grants, and lets the
  // others wait.
  bool sharedConnection = false;
};

using HttpCompletion = std::function<void(const HttpResult&)>;

// Sends requests over HTTP and HTTPS.
class HttpClient {
 public:
  // An exchange under way. `cancel` may be called any number of times, on the main thread.
  class Exchange {
   public:
    virtual ~Exchange() = default;
    virtual void cancel() = 0;
  };

  virtual ~HttpClient() = default;

  // Starts one exchange. Any thread. `completion` is called exactly once, never inside this call,
  // on the thread that the request names; after a cancel with TransportError::cancelled.
  // The exchange runs on when the returned handle is dropped.
  // Failures (domain transportErrorDomain): unsupportedUrl for anything but http and https,
  // cannotConnect, connectionLost, timedOut (idle or deadline), tooManyRedirects (more than
  // Limits::httpRedirects), bodyTooLarge, cannotDecode. An HTTP status is never a failure.
  // Redirects are followed hop by hop; "Cookie" and "Authorization" headers of the request reach
  // only the host that they were made for; cookies of every hop are stored.
  virtual std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) = 0;
};

}  // namespace tavo
