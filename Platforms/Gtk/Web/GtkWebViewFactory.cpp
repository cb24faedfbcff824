#include "Gtk/Web/GtkWebViewFactory.h"

#include "Gtk/Web/GtkWebView.h"

namespace tavo::gtk {

GtkWebViewFactory::GtkWebViewFactory(WebModuleServices services)
    : engine_{std::make_shared<WebEngine>(std::move(services))},
      pool_{std::make_shared<WebViewPool>(engine_)} {}

std::shared_ptr<WebView> GtkWebViewFactory::create(const Rect& frame,
                                                   const WebViewOptions& options) {
  return std::make_shared<GtkWebView>(frame, options, engine_, pool_);
}

}  // namespace tavo::gtk

extern "C" __attribute__((visibility("default"))) tavo::WebViewFactory*
tavo_create_web_view_factory(const tavo::gtk::WebModuleServices& services) {
  return std::make_unique<tavo::gtk::GtkWebViewFactory>(services).release();
}
