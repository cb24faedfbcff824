#include "Gtk/Http/GtkHttpClient.h"

#include <algorithm>
#include <utility>

#include "Gtk/Http/HttpExchange.h"

namespace tavo::gtk {

namespace {

// As many connections as browsers have to one host.
constexpr int connections = 24;
constexpr int connectionsPerHost = 6;

// The library closes a connection that nobody used for a minute, and a request that is sent in the
// turn in which that happens is never answered: a slot that refreshes each minute meets it now and
// then. So nothing is closed for its age; the bound closes the oldest, and a dead one is not used.
constexpr unsigned neverTooOld = 0;

GPtr<SoupSession> makeSession(int most, int mostPerHost) {
  auto session = GPtr<SoupSession>::adopt(SOUP_SESSION(
      g_object_new(SOUP_TYPE_SESSION, "max-conns", std::max(most, 1), "max-conns-per-host",
                   std::max(mostPerHost, 1), "idle-timeout", neverTooOld, nullptr)));
  // A name and password inside an ad's URL are not sent just because a server asks for some.
  soup_session_remove_feature_by_type(session.get(), SOUP_TYPE_AUTH_MANAGER);
  return session;
}

}  // namespace

GtkHttpClient::GtkHttpClient(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<CookieStore> cookies,
                             const Limits& limits, std::string userAgent,
                             std::shared_ptr<Inspection> inspection)
    : services_{std::make_shared<const HttpServices>(HttpServices{
          std::move(runLoop), std::move(cookies), makeSession(connections, connectionsPerHost),
          makeSession(limits.pingConnections, limits.pingConnectionsPerHost), limits.httpRedirects,
          std::move(userAgent), std::move(inspection)})} {}

GtkHttpClient::~GtkHttpClient() = default;

std::shared_ptr<HttpClient::Exchange> GtkHttpClient::send(HttpRequest request,
                                                          HttpCompletion completion) {
  const auto exchange =
      std::make_shared<HttpExchange>(services_, std::move(request), std::move(completion));
  if (services_->runLoop->isMainThread()) {
    exchange->start();
  } else {
    services_->runLoop->post([exchange] { exchange->start(); });
  }
  return exchange;
}

}  // namespace tavo::gtk
