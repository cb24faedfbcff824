#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <tavo/WebView.h>

#include "Services/RunLoop.h"

namespace tavo::headless {

// A web view without an engine: it records what it is told, and a test plays the page. Completions
// and reports arrive through the run loop, as with a real engine.
class HeadlessWebView : public WebView {
 public:
  HeadlessWebView(Rect frame, std::shared_ptr<RunLoop> runLoop);

  void setClient(std::weak_ptr<WebViewClient> client) override { client_ = std::move(client); }
  void loadHtml(const std::string& html, const Url& baseUrl) override;
  void loadUrl(const Url& url) override;
  void loadUrlIgnoringCache(const Url& url) override {
    ++uncachedLoads;
    loadUrl(url);
  }
  void stopLoading() override;
  void addDocumentStartScript(const std::string& script) override;
  void evaluate(const std::string& script,
                std::function<void(const std::string&)> completion = {}) override;
  [[nodiscard]] Url url() const override { return url_; }
  [[nodiscard]] std::string title() const override { return {}; }
  [[nodiscard]] bool isLoading() const override { return loading_; }
  [[nodiscard]] double estimatedProgress() const override { return loading_ ? progress : 1; }
  [[nodiscard]] bool canGoBack() const override { return pagesBehind > 0; }
  [[nodiscard]] bool canGoForward() const override { return pagesAhead > 0; }
  void goBack() override { travel(pagesBehind, pagesAhead); }
  void goForward() override { travel(pagesAhead, pagesBehind); }
  void reload() override;

  // The page as a test describes it.
  double progress = 0;  // while it loads
  int pagesBehind = 0;
  int pagesAhead = 0;
  int reloads = 0;
  int uncachedLoads = 0;

  // What a test reads.
  [[nodiscard]] const std::string& html() const { return html_; }
  [[nodiscard]] const Url& baseUrl() const { return baseUrl_; }
  [[nodiscard]] const std::vector<std::string>& documentStartScripts() const {
    return documentStartScripts_;
  }
  // Every evaluated script, in order.
  [[nodiscard]] const std::vector<std::string>& scripts() const { return scripts_; }

  // Hears every evaluated script at once.
  std::function<void(const std::string& script)> onScript{};

  // What a test plays. A load finishes by itself in the next turn unless it is held.
  void holdLoads(bool hold) { holdLoads_ = hold; }
  void finishLoad();
  void failLoad(const Error& error);
  void terminateProcess();
  // Asks the client about a navigation; returns its answer.
  bool navigate(const Navigation& navigation);
  // The result of evaluating exactly `script`, from now on.
  void setResult(const std::string& script, std::string result);

 private:
  void startLoad();
  // Moves one page of the history from one side to the other, and loads it.
  void travel(int& from, int& to);

  std::shared_ptr<RunLoop> runLoop_;
  std::weak_ptr<WebViewClient> client_;
  std::string html_;
  Url baseUrl_;
  Url url_;
  bool loading_ = false;
  bool holdLoads_ = false;
  int load_ = 0;  // counts loads, so that a late report of a replaced one is dropped
  std::vector<std::string> documentStartScripts_;
  std::vector<std::string> scripts_;
  std::map<std::string, std::string> results_;
};

}  // namespace tavo::headless
