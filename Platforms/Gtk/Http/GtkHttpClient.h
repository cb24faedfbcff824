#pragma once

#include <memory>
#include <string>

#include <tavo/Inspection.h>
#include <tavo/Limits.h>

#include "Services/CookieStore.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

struct HttpServices;

// HTTP over libsoup, on the main context: one session with its connections for content, another for
// tracking.
//
// libsoup carries single hops only: redirects, cookies and time-outs are ours, because its own
// would take a request's cookies along to other hosts and wait for ever for a body that drips.
// Nothing is cached, so both cache policies are the same. An answer's head may have 64 KB, a bound
// of libsoup's; more counts as a lost connection. HTTP/2 is spoken with servers that offer it below
// TLS, over one connection to each; what a server does not grant at a time waits in libsoup.
class GtkHttpClient : public HttpClient {
 public:
  // Main thread. Reads the limits for redirects and for the connections of tracking. `userAgent`
  // is what requests without a "User-Agent" of their own say; empty: nothing. A null inspection
  // sees nothing.
  GtkHttpClient(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<CookieStore> cookies,
                const Limits& limits, std::string userAgent = {},
                std::shared_ptr<Inspection> inspection = nullptr);
  // Exchanges that are under way go on.
  ~GtkHttpClient() override;

  std::shared_ptr<Exchange> send(HttpRequest request, HttpCompletion completion) override;

 private:
  std::shared_ptr<const HttpServices> services_;
};

}  // namespace tavo::gtk
