#pragma once

#include <webkit/webkit.h>

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "Gtk/GPtr.h"
#include "Gtk/SignalConnections.h"
#include "Gtk/Web/CookieSource.h"
#include "Gtk/Web/NetworkProcess.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// Keeps the engine's cookies and the application's the same, live and both ways.
//
// The application's changes are passed on one by one. The engine only says that something has
// changed, so its whole list is read then and compared with what it was known to have. A cookie
// counts as removed by a page only after the engine was once seen to have it: what it refuses to
// keep stays in the store.
//
// The engine keeps its cookies in its network process. When that ends it starts another one, empty,
// and says nothing of changes any more: then it is given the store's cookies anew, and its list is
// read again and again.
class EngineCookies {
 public:
  EngineCookies(WebKitNetworkSession* session, std::shared_ptr<CookieSource> source,
                std::shared_ptr<RunLoop> runLoop);
  ~EngineCookies();
  EngineCookies(const EngineCookies&) = delete;
  EngineCookies& operator=(const EngineCookies&) = delete;

 private:
  using Key = std::tuple<std::string, std::string, std::string>;  // domain, path, name
  using Cookies = std::map<Key, Cookie>;

  struct Reading;

  static Key keyOf(const Cookie& cookie);
  static void onChanged(WebKitCookieManager*, EngineCookies* self);
  static void onRead(GObject* manager, GAsyncResult* result, gpointer reading);

  void startAnew();
  void put(const Cookie& cookie);
  void remove(const Cookie& cookie);
  void read();
  void take(Cookies current);
  void compare(Cookies current);

  GPtr<WebKitNetworkSession> session_;
  WebKitCookieManager* manager_;  // the session's
  std::shared_ptr<CookieSource> source_;
  std::shared_ptr<RunLoop> runLoop_;
  Cookies known_;          // what the engine was seen to have
  bool reading_ = false;   // an answer is on its way
  bool outdated_ = false;  // something has changed since it was asked for
  std::shared_ptr<EngineCookies*> alive_ = std::make_shared<EngineCookies*>(this);
  NetworkProcess process_{[this] { startAnew(); }};
  bool doubted_ = false;  // the last list was an emptied one
  Timer secondLook_;
  Timer reader_;  // from the end of the first network process on
  SignalConnections connections_;
};

// Gives the engine's session what the application's store has now.
void copyCookies(const CookieSource& source, WebKitNetworkSession* session);

}  // namespace tavo::gtk
