#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/WebView.h>

#include "Gtk/Scene/NativeView.h"
#include "Gtk/Web/NativeWebView.h"
#include "Gtk/Web/WebViewPool.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// A page in the scene: holds a native web view for as long as it lives and gives it back then.
class GtkWebView : public WebView, public NativeView, private PageOwner {
 public:
  GtkWebView(const Rect& frame, const WebViewOptions& options, std::shared_ptr<WebEngine> engine,
             std::shared_ptr<WebViewPool> pool);
  ~GtkWebView() override;
  GtkWebView(const GtkWebView&) = delete;
  GtkWebView& operator=(const GtkWebView&) = delete;

  void setClient(std::weak_ptr<WebViewClient> client) override { client_ = std::move(client); }
  void loadHtml(const std::string& html, const Url& baseUrl) override;
  void loadUrl(const Url& url) override { load(url, CachePolicy::useProtocolCachePolicy); }
  void loadUrlIgnoringCache(const Url& url) override {
    load(url, CachePolicy::reloadIgnoringLocalCacheData);
  }
  void stopLoading() override;
  void addDocumentStartScript(const std::string& script) override;
  void evaluate(const std::string& script,
                std::function<void(const std::string&)> completion = {}) override;

  [[nodiscard]] Url url() const override;
  [[nodiscard]] std::string title() const override;
  [[nodiscard]] bool isLoading() const override;
  [[nodiscard]] double estimatedProgress() const override;
  [[nodiscard]] bool canGoBack() const override;
  [[nodiscard]] bool canGoForward() const override;
  void goBack() override;
  void goForward() override;
  void reload() override;

  [[nodiscard]] GtkWidget* widget() override { return native_->widget(); }
  [[nodiscard]] bool isReadyToShow() const override { return ready_; }
  [[nodiscard]] bool isResting() const override { return isAtRest(); }
  [[nodiscard]] bool isKept() const override { return options_.owner != nullptr; }

 private:
  void layoutSubviews() override;

  bool pageShouldStart(const Navigation& navigation) override;
  void pageCannotShow(const Url& url) override;
  void pageRefusedDocument(const std::string& reason) override;
  void pageRefusedRequest() override;
  void pageStarted() override;
  void pageFinished() override;
  void pageFailed(const Error& error) override;
  void pageProcessEnded(const Error& reason) override;
  void pageTapped() override;

  void load(const Url& url, CachePolicy policy);
  // False, with the failure on its way, when no new load may begin.
  bool beginLoad();
  void applySettings();
  void failLater(Error error);
  void setReady(bool ready);
  void timeOut();

  WebViewOptions options_;
  std::shared_ptr<WebEngine> engine_;
  std::shared_ptr<WebViewPool> pool_;
  std::shared_ptr<NativeWebView> native_;
  std::shared_ptr<ReloadBudget> budget_;
  std::weak_ptr<WebViewClient> client_;
  bool ready_ = false;
  Timer timeOut_;
};

}  // namespace tavo::gtk
