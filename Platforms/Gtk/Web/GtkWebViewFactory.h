#pragma once

#include <memory>

#include "Gtk/Web/WebEngine.h"
#include "Gtk/Web/WebViewPool.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// The web module's factory.
class GtkWebViewFactory : public WebViewFactory {
 public:
  explicit GtkWebViewFactory(WebModuleServices services);

  [[nodiscard]] std::shared_ptr<WebView> create(const Rect& frame,
                                                const WebViewOptions& options) override;
  void warmUp(const WebViewOptions& options) override { pool_->warmUp(options); }
  void findUserAgent(std::function<void()> found) override { found(); }
  [[nodiscard]] std::string userAgent() override { return engine_->userAgent(); }

 private:
  std::shared_ptr<WebEngine> engine_;
  std::shared_ptr<WebViewPool> pool_;
};

}  // namespace tavo::gtk
