#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Observer.h>
#include <tavo/Url.h>
#include <tavo/ViewController.h>
#include <tavo/WebView.h>
#include <tavo/XBrowserConfiguration.h>

#include "ClickThrough/StorePresenter.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/InAppBrowser/BrowserToolbar.h"
#include "UserInterface/WebView/InAppBrowser/LoadProgress.h"
#include "UserInterface/WebView/InAppBrowser/PageVerdict.h"

namespace tavo {

class XInAppBrowser;

// What an in-app browser reports. Main thread.
struct XInAppBrowserDelegate {
  // The browser has left the screen, by its own button or because what it stood on went.
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
      std::shared_ptr<Environment> environment,
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
  [[nodiscard]] const std::shared_ptr<BrowserToolbar>& toolbar() const { return toolbar_; }
  [[nodiscard]] std::shared_ptr<Button> backButton() const {
    return toolbar_ ? toolbar_->backButton() : nullptr;
  }
  [[nodiscard]] std::shared_ptr<Button> forwardButton() const {
    return toolbar_ ? toolbar_->forwardButton() : nullptr;
  }

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
  explicit XInAppBrowser(std::shared_ptr<Environment> environment);

  void makeToolbar();
  void makeWebView();
  void placeAll();
  void pressed(BrowserButton button);
  void updateHistoryButtons();
  void nameAfter(const std::string& title);
  // The page that the person means: the one in front, or the one that could not be shown.
  [[nodiscard]] Url currentPage() const;
  void showPage(const std::string& title);
  void explain(const Error& error);
  void offerOutside(const Error& error);
  void leaveApplication(const Url& url);
  void dismissBrowser();
  void tellClosed();

  // Whether the page loads.
  bool carryOut(const LoadPage& verdict, const Url& url);
  bool carryOut(const ShowInStore& verdict, const Url& url);
  bool carryOut(const NowhereInStore& verdict, const Url& url);
  bool carryOut(const LeaveApplication& verdict, const Url& url);
  bool carryOut(const NoPage& verdict, const Url& url);
  ViewController* loadAfterADelayWithData();
  void productViewControllerDidFinish();

  std::shared_ptr<Environment> environment_;
  Url url_;
  Url wanted_;               // what the main frame was last asked to show
  bool showsError_ = false;  // in the place of that
  std::shared_ptr<WebView> webView_;
  std::shared_ptr<BrowserToolbar> toolbar_;
  std::shared_ptr<LoadProgress> progress_;
  std::shared_ptr<StorePresenter> store_;
  bool dismissesItself_ = false;
};

}  // namespace tavo
