#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Headless/HeadlessWebView.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo::headless {

// Makes recording web views and keeps track of them.
class HeadlessWebViewFactory : public WebViewFactory {
 public:
  explicit HeadlessWebViewFactory(std::shared_ptr<RunLoop> runLoop)
      : runLoop_{std::move(runLoop)} {}

  [[nodiscard]] std::shared_ptr<WebView> create(const Rect& frame,
                                                const WebViewOptions& options) override;
  void warmUp(const WebViewOptions& /*options*/) override { ++warmUps; }
  void findUserAgent(std::function<void()> found) override {
    if (holdsAgent) return agentAsked.push_back(std::move(found));
    found();
  }
  [[nodiscard]] std::string userAgent() override { return agent; }

  // The newest web view that is still alive, or null.
  [[nodiscard]] std::shared_ptr<HeadlessWebView> last() const { return last_.lock(); }
  std::string agent = "Headless/1.0";
  bool holdsAgent = false;  // who asks for it beside the loop waits in `agentAsked`
  std::vector<std::function<void()>> agentAsked;
  int created = 0;
  int warmUps = 0;
  // For the views made from now on.
  bool holdLoads = false;
  std::function<void(const std::string& script)> onScript{};

 private:
  std::shared_ptr<RunLoop> runLoop_;
  std::weak_ptr<HeadlessWebView> last_;
};

}  // namespace tavo::headless
