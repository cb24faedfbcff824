#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <tavo/Observer.h>
#include <tavo/Url.h>
#include <tavo/ViewController.h>
#include <tavo/WebView.h>
#include <tavo/XBrowserConfiguration.h>

#include "Scene/Toolbar.h"
#include "Services/RunLoop.h"
#include "UserInterface/WebView/InAppBrowser/BrowserToolbar.h"

namespace tavo {

class XInAppBrowser;

// What an in-app browser reports. Main thread.
struct XInAppBrowserDelegate {
  // The browser has left the screen.
  std::function<void(XInAppBrowser&)> XInAppBrowserClose{};
  // A page is about to open outside the application.
  std::function<void(XInAppBrowser&)> XInAppBrowserWillLeaveApplication{};
  std::function<void(XInAppBrowser&, const Error&)> XInAppBrowserDidFailLoadWithError{};
};

// Shows the page behind a click over the whole window, with a toolbar as the application's settings
// want it. Links to the store's pages open the store's sheet, which closes the browser with it.
// Whoever makes a browser presents it; the browser dismisses itself. Main thread only.
class XInAppBrowser : public ViewController, public WebViewClient {
 public:
  [[nodiscard]] static std::shared_ptr<XInAppBrowser> create(
      const std::shared_ptr<const XInAppBrowserDelegate>& delegate);
  ~XInAppBrowser() override;

  Observer<XInAppBrowserDelegate> delegate;

  // The toolbar's settings; those of the whole application unless replaced before the browser is on
  // the screen. Never null.
  std::shared_ptr<XBrowserConfiguration> browserConfig;

  // The page to show, loaded as soon as the browser is on the screen.
  [[nodiscard]] const Url& URL() const { return url_; }
  void setURL(const Url& url);
  void load();

  // The working views; null before the browser is on the screen, and where the settings hide them.
  [[nodiscard]] const std::shared_ptr<WebView>& webView() const { return webView_; }
  [[nodiscard]] const std::shared_ptr<Toolbar>& toolbar() const { return toolbar_; }
  [[nodiscard]] const std::shared_ptr<Button>& backButton() const { return backButton_; }
  [[nodiscard]] const std::shared_ptr<Button>& forwardButton() const { return forwardButton_; }

  [[nodiscard]] bool canShowToolBarButton(unsigned button) const;
  [[nodiscard]] std::vector<XBrowserConfiguration::ToolbarDetail> hasPublisherSetImage(
      unsigned button) const;
  [[nodiscard]] std::vector<std::shared_ptr<Button>> createToolbarItems();

  void closeButtonItemClicked();
  void backButtonItemClicked();
  void forwardButtonItemClicked();
  void reloadButtonItemClicked();
  void actionButtonItemClicked();

  // ViewController
  bool cancelOperation() override;
  void didRotateFromInterfaceOrientation(InterfaceOrientation from) override;

  // WebViewClient
  bool webViewShouldStartLoad(WebView& webView, const Navigation& navigation) override;
  void webViewDidStartLoad(WebView& webView) override;
  void webViewDidFinishLoad(WebView& webView) override;
  void webViewDidFailLoad(WebView& webView, const Error& error) override;
  void webViewProcessDidTerminate(WebView& webView, const Error& error) override;

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override;
  void viewDidLoad() override;
  void viewDidDisappear(Animated animated) override;

 private:
  XInAppBrowser();

  [[nodiscard]] bool isToolbarOnTop() const { return browserConfig->toolbarPosition == 0; }
  void makeToolbar();
  void makeWebView();
  void placeToolbar();
  void applyAppearance();
  [[nodiscard]] std::shared_ptr<Button> makeButton(BrowserButton button);
  void pressed(BrowserButton button);
  void updateHistoryButtons();
  void followProgress();
  void showProgress();
  void openStorePage(const Url& url);
  void loadAfterADelayWithData(const std::shared_ptr<ViewController>& sheet);
  void productViewControllerDidFinish();
  void dismissBrowser();

  Url url_;
  std::shared_ptr<WebView> webView_;
  std::shared_ptr<Toolbar> toolbar_;
  std::shared_ptr<Button> backButton_;
  std::shared_ptr<Button> forwardButton_;
  std::shared_ptr<View> progressBar_;
  Timer progressTimer_;
  double lastProgress_ = 0;
  Seconds lastProgressAt_{0};
  bool timedOut_ = false;
  Timer storeDelay_;
  std::weak_ptr<ViewController> storeSheet_;
};

}  // namespace tavo
