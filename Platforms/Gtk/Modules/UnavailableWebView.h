#pragma once

#include <memory>

#include <tavo/WebView.h>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// Stands in for a page where no web engine can run: every load fails in the next turn with
// webEngineUnavailableError, every script gives no result.
class UnavailableWebView : public WebView {
 public:
  UnavailableWebView(const Rect& frame, std::shared_ptr<RunLoop> runLoop);

  void setClient(std::weak_ptr<WebViewClient> client) override { client_ = std::move(client); }
  void loadHtml(const std::string& html, const Url& baseUrl) override;
  void loadUrl(const Url& url) override;
  void loadUrlIgnoringCache(const Url& url) override { loadUrl(url); }
  void stopLoading() override {}
  void addDocumentStartScript(const std::string& /*script*/) override {}
  void evaluate(const std::string& script,
                std::function<void(const std::string&)> completion) override;

  [[nodiscard]] Url url() const override { return {}; }
  [[nodiscard]] std::string title() const override { return {}; }
  [[nodiscard]] bool isLoading() const override { return false; }
  [[nodiscard]] double estimatedProgress() const override { return 0; }
  [[nodiscard]] bool canGoBack() const override { return false; }
  [[nodiscard]] bool canGoForward() const override { return false; }
  void goBack() override {}
  void goForward() override {}
  void reload() override { failLoad(); }

 private:
  void failLoad();

  std::shared_ptr<RunLoop> runLoop_;
  std::weak_ptr<WebViewClient> client_;
};

}  // namespace tavo::gtk
