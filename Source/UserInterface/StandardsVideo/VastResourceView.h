#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Button.h>
#include <tavo/VastTracking.h>
#include <tavo/WebView.h>

#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

// Draws the first of some resources that can be drawn: a picture, or a page. Takes clicks on
// pictures; pages open links of their own accord, and are told on. Made with `create`; main thread
// only.
class VastResourceView : public View, public WebViewClient {
 public:
  struct Events {
    std::function<void()> shown{};             // drawn, and on the screen; once
    std::function<void()> failed{};            // none could be drawn; once
    std::function<void()> clicked{};           // a picture, or a covered page
    std::function<void(const Url&)> opened{};  // a page wants to open another one
  };
  // Whether a page lies below a button that takes its clicks.
  enum class Pages { takeClicks, areCovered };

  [[nodiscard]] static std::shared_ptr<VastResourceView> create(
      std::shared_ptr<Environment> environment, const Rect& frame,
      std::vector<VastResource> resources, const std::string& label, Pages pages, Events events);
  ~VastResourceView() override;

  // Begins to fetch; harmless when repeated.
  void load();

  // WebViewClient
  bool webViewShouldStartLoad(WebView& webView, const Navigation& navigation) override;
  void webViewDidStartLoad(WebView& /*webView*/) override {}
  void webViewDidFinishLoad(WebView& webView) override;
  void webViewDidFailLoad(WebView& webView, const Error& error) override;
  void webViewProcessDidTerminate(WebView& webView, const Error& error) override;

  // View
  void didAppearOnScreen() override { appeared(); }

 protected:
  void willMoveToSuperview(View* newSuperview) override;

 private:
  VastResourceView(std::shared_ptr<Environment> environment, const Rect& frame,
                   std::vector<VastResource> resources, Pages pages, Events events)
      : View{frame},
        environment_{std::move(environment)},
        resources_{std::move(resources)},
        pages_{pages},
        events_{std::move(events)} {}

  void tryNext();
  void loadPicture(const VastResource& resource);
  void loadPage(const VastResource& resource);
  void received(const HttpResult& result);
  void drawn();
  void appeared();
  void cover(const std::string& label);

  const std::shared_ptr<Environment> environment_;
  const std::vector<VastResource> resources_;
  const Pages pages_;
  const Events events_;
  std::shared_ptr<Button> button_;
  std::shared_ptr<WebView> page_;
  std::shared_ptr<HttpClient::Exchange> exchange_;
  std::size_t next_ = 0;
  bool loads_ = false;
  bool drawn_ = false;
  bool told_ = false;
};

}  // namespace tavo
