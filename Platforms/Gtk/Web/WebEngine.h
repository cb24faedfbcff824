#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

#include "Gtk/GPtr.h"
#include "Gtk/SignalConnections.h"
#include "Gtk/Web/EngineCookies.h"
#include "Gtk/Web/NetworkMeter.h"
#include "Gtk/Web/ProcessWatch.h"
#include "Gtk/Web/WebModule.h"

namespace tavo::gtk {

// What all pages have in common: the engine's context with its memory limit, the network sessions
// with their cookies, and the settings that a page starts with.
class WebEngine {
 public:
  explicit WebEngine(WebModuleServices services);
  WebEngine(const WebEngine&) = delete;
  WebEngine& operator=(const WebEngine&) = delete;

  [[nodiscard]] const WebModuleServices& services() const { return services_; }
  [[nodiscard]] ProcessWatch& processes() { return processes_; }
  [[nodiscard]] NetworkMeter& network() { return network_; }
  [[nodiscard]] WebKitWebContext* context() const { return context_.get(); }
  // Keeps nothing on disk: what is to last is in the cookie store. The session of a browser is
  // brought up to date with the creatives' cookies each time.
  [[nodiscard]] WebKitNetworkSession* session(PageKind kind);
  // New ones for each page; a page's owner changes its own.
  [[nodiscard]] GPtr<WebKitSettings> makeSettings(PageKind kind) const;
  [[nodiscard]] GPtr<WebKitWebsitePolicies> makePolicies(PageKind kind) const;
  [[nodiscard]] std::string userAgent() const;

  // Takes the pages before from the history of a view that is blank, so that neither its next owner
  // nor a script can go back to them. The engine cannot empty a history, it can only put another
  // one in its place: that of the first view that had been nothing but blank, which this remembers.
  // What stays is the number that a script reads as history.length.
  void forgetHistory(WebKitWebView* view);
  // Drops what creatives have stored. All of them: the engine keeps it by origin, and those of two
  // slots may have the same. `done` is called later.
  void forgetStorage(std::function<void()> done);
  // False until a blank view has been seen: a fresh view starts blank then.
  [[nodiscard]] bool canForgetHistory() const { return blankHistory_ != nullptr; }

 private:
  WebModuleServices services_;
  ProcessWatch processes_{services_.runLoop, services_.log, services_.limits, services_.inspection};
  NetworkMeter network_{services_.runLoop, [this] { return processes_.isBrowsing(); }};
  GPtr<WebKitWebContext> context_;
  GPtr<WebKitNetworkSession> session_;
  GOwned<WebKitWebViewSessionState, &webkit_web_view_session_state_unref> blankHistory_;
  EngineCookies cookies_;
  GPtr<WebKitNetworkSession> browserSession_;  // null until there is a browser
  SignalConnections connections_;
};

}  // namespace tavo::gtk
