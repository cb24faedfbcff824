#pragma once

#include <libsoup/soup.h>

#include <memory>
#include <optional>
#include <string>

#include "Gtk/GPtr.h"
#include "Gtk/Http/HttpBodyReader.h"
#include "Gtk/Http/HttpWatchdog.h"
#include "Rules/HttpHops.h"
#include "Rules/HttpInspection.h"
#include "Services/CookieStore.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// What every exchange of one client uses.
struct HttpServices {
  std::shared_ptr<RunLoop> runLoop;
  std::shared_ptr<CookieStore> cookies;
  // Main thread only. Two, because a session's connections and its queue are shared by all that is
  // sent over it.
  GPtr<SoupSession> contentSession;
  GPtr<SoupSession> trackingSession;
  int redirectLimit = 0;
  std::string userAgent;                   // of requests that say nothing themselves
  std::shared_ptr<Inspection> inspection;  // may be null
};

// One request from `start` to its completion: the hops one after the other, their cookies, the
// time-outs and the body. It keeps itself alive until then. Main thread only, but for construction.
class HttpExchange : public HttpClient::Exchange,
                     public std::enable_shared_from_this<HttpExchange> {
 public:
  HttpExchange(std::shared_ptr<const HttpServices> services, HttpRequest request,
               HttpCompletion completion);

  // Once.
  void start();
  void cancel() override;

 private:
  // Whether the completion is called from where the result came about, or not before the code that
  // runs now has returned.
  enum class Delivery { now, later };

  [[nodiscard]] SoupSession* session() const;
  void startHop(Delivery ofFailure);
  void watchProgress(SoupMessage* message);
  void headArrived(SoupSession* source, GAsyncResult* result);
  void follow(GPtr<GInputStream> stream);
  void readBody();

  void fail(TransportError code, std::string description, Delivery delivery = Delivery::now);
  void finish(std::optional<Error> error, Delivery delivery = Delivery::now);
  void keepStreamForATurn();
  void dropEverything();

  std::shared_ptr<const HttpServices> services_;
  const HttpRequest request_;
  HttpHops hops_;
  HttpInspection inspection_;
  HttpCompletion completion_;  // none once finished
  std::shared_ptr<HttpExchange> keepAlive_;
  std::shared_ptr<HttpWatchdog> watchdog_;

  GPtr<GCancellable> cancellable_;        // of the current hop
  GPtr<SoupMessage> message_;             // whose head arrived last
  std::optional<HttpResponse> response_;  // the same as a record
  bool sharedConnection_ = false;         // of the first hop
  std::unique_ptr<HttpBodyReader> reader_;
};

}  // namespace tavo::gtk
