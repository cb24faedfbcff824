#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Gtk/SignalConnections.h"
#include "Gtk/Web/WebModule.h"
#include "Runtime/SlotInspection.h"

namespace tavo::gtk {

// Watches one page for the inspection: what it writes to its console, the errors that its scripts
// do not catch, what it fetches, what the observer's own script finds. Made for a page's owner
// while somebody looks, and gone with the owner. Main thread only.
class PageInspection : public InspectedPage {
 public:
  PageInspection(WebKitWebView* view, WebKitUserContentManager* content, const void* slot,
                 const WebModuleServices& services);
  ~PageInspection() override;

  void openTools() override;

 private:
  void addScript(const std::string& script);
  static void onMessage(WebKitUserContentManager*, JSCValue* message, PageInspection* self);
  void heard(JSCValue* message);
  static void onResource(WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest* request,
                         PageInspection* self);

  WebKitWebView* view_;
  WebKitUserContentManager* content_;
  const SlotInspection inspection_;
  std::shared_ptr<RunLoop> runLoop_;
  SignalConnections connections_;
};

}  // namespace tavo::gtk
