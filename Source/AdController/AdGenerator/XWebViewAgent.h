#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/Observer.h>
#include <tavo/Url.h>
#include <tavo/View.h>
#include <tavo/WebView.h>

#include "AdController/AdGenerator/CreativeCommands.h"
#include "AdController/AdGenerator/NavigationPolicy.h"
#include "AdController/AdGenerator/WebViewAgentDelegate.h"
#include "AdController/AdGenerator/WebViewAgentHost.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Runtime/Environment.h"
#include "Runtime/NotificationCenter.h"
#include "Runtime/SlotInspection.h"
#include "Services/HttpClient.h"
#include "Services/WebViewFactory.h"

namespace tavo {

// Carries an HTML creative: prepares its text, polices its navigation, tells apart what is a click
// and what is not, carries its commands out through the ad view, and reports when the page is ready
// to be shown. Made with `create`; main thread only.
class XWebViewAgent : public View, public WebViewClient {
 public:
  // `page` names who shows ads one after the other: its agents reuse one native view.
  [[nodiscard]] static std::shared_ptr<XWebViewAgent> create(
      std::shared_ptr<Environment> environment, const Rect& frame, const WebViewOptions& page,
      const std::shared_ptr<const WebViewAgentDelegate>& delegate);
  ~XWebViewAgent() override;

  Observer<WebViewAgentDelegate> delegate;
  bool userTappedWebView = false;  // a tap ended; the next navigation decision uses it up

  // What the creative has asked for so far.
  [[nodiscard]] const CreativeCommands& commands() const { return *commands_; }
  [[nodiscard]] const std::shared_ptr<WebView>& webView() const { return webView_; }
  [[nodiscard]] const std::shared_ptr<XMRAIDEventEmitter>& eventEmitter() const {
    return eventEmitter_;
  }

  // Prepares and loads the creative. A creative that names "mraid.js" gets no base URL, so that it
  // cannot fetch another script of that name. Without the MRAID script among the resources nothing
  // is loaded and nothing is reported.
  void loadHTMLString(const std::string& html, const Url& baseURL,
                      std::weak_ptr<WebViewAgentHost> xAdView);

  // Loads the page of an address as a creative: with the bridge, policed and reported like one, and
  // treated by the standard. Without the MRAID script among the resources the load fails.
  void loadPage(const Url& url, std::weak_ptr<WebViewAgentHost> xAdView);

  // Fetches a plain address. What comes is dropped: nothing of it reaches the page.
  void loadRequest(HttpRequest request);

  // The path of the MRAID script among the resources, or none.
  [[nodiscard]] std::optional<std::string> MRAIDScriptPath() const;

  // Follows a click.
  void openUrl(const Url& url);
  // Gives the URL to whoever its scheme belongs to; false when it is one for the browser.
  bool handleClickCommandsWithUrl(const Url& url);

  // Carries out one command of the creative, at once. Agent and ad view live on until it is done,
  // whatever the host does meanwhile.
  void handleCommandWithURL(const Url& url);

  // Tells the page everything it may ask for before it hears "ready", in a fixed order.
  void initializeJavaScriptBridge(XMRAIDEventEmitter& emitter,
                                  const std::shared_ptr<WebView>& webView);
  void mraidSupportsFeatures(const std::shared_ptr<WebView>& webView);

  // Points, as the user holds the screen; without the strip of the status bar unless it is asked
  // for.
  [[nodiscard]] Size screenSizeIncludingStatusBar(bool includingStatusBar) const;

  // WebViewClient
  bool webViewShouldStartLoad(WebView& webView, const Navigation& navigation) override;
  void webViewDidStartLoad(WebView& /*webView*/) override {}
  void webViewDidFinishLoad(WebView& webView) override;
  void webViewDidFailLoad(WebView& webView, const Error& error) override;
  void webViewProcessDidTerminate(WebView& webView, const Error& error) override;

 private:
  XWebViewAgent(std::shared_ptr<Environment> environment, const Rect& frame);

  void makeWebView(const WebViewOptions& page);
  void makeCommands();
  void connect(const std::string& scriptPath, std::weak_ptr<WebViewAgentHost> xAdView);
  void handleTap(const TapRecognizer& recognizer);
  void orientationDidChange();
  void inspect(const Navigation& navigation, NavigationDecision decision) const;
  [[nodiscard]] bool mayLoadInPage(const Navigation& navigation);
  void takeCommand(const Url& url);
  void finishedDocument(const std::string& markup);
  void reportRendered();

  const std::shared_ptr<Environment> environment_;
  SlotInspection inspection_;
  std::shared_ptr<WebView> webView_;
  std::shared_ptr<XMRAIDEventEmitter> eventEmitter_;
  std::unique_ptr<CreativeCommands> commands_;
  std::weak_ptr<WebViewAgentHost> xadViewInstance_;
  std::shared_ptr<HttpClient::Exchange> connection_;
  Subscription orientationSubscription_;
  bool isHTMLRequest_ = false;       // an HTML load was handed over and not yet reported
  bool isPage_ = false;              // loaded by its address, and refused when it is no page
  bool isMetaRefreshExist_ = false;  // the last finished document sends itself elsewhere
  bool isFailureTold_ = false;       // since the last page was there
  int finishedLoads_ = 0;            // so that the markup of a replaced document is dropped
};

}  // namespace tavo
