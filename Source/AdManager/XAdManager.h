#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/Observer.h>

#include "AdController/AdGenerator/XWebViewAgent.h"
#include "AdInfo/XAdInfo.h"
#include "AdManager/AdManagerView.h"
#include "AdManager/AdVerdict.h"
#include "AdManager/VastRoad.h"
#include "AdManager/XAdManagerDelegate.h"
#include "Communicator/XServerCommunicator.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

namespace tavo {

// Works for one ad view: asks the server for an ad, decides what came back, makes the renderer for
// it, fires the impression and reports to its delegate, the ad view. Made with `create`; main
// thread only. An answer that arrives after the manager is gone is dropped.
class XAdManager : public std::enable_shared_from_this<XAdManager> {
 public:
  [[nodiscard]] static std::shared_ptr<XAdManager> create(
      std::weak_ptr<AdManagerView> adView,
      const std::shared_ptr<const XAdManagerDelegate>& delegate);

  Observer<XAdManagerDelegate> delegate;
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, which a pre-roll borrows

  // Asks the server for an ad. Every outcome reaches the delegate; offline it does so inside this
  // call.
  void loadAdWithDomainName(const std::string& domainName, const std::string& pageName,
                            const std::string& adPosition, const std::string& keywords,
                            const std::string& queryString);

  // Asks again at the address that an answer named.
  void loadAdWithRedirectURL(const std::string& url);

  [[nodiscard]] bool isRequestRedirected() const { return requestRedirected_; }
  // The video of the current answer; null when it is none or not there yet.
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const;

 private:
  // How far an answer has come.
  struct Progress {
    bool handled = false;               // given to a renderer, or ended in an outcome
    bool waitingForCompletion = false;  // the impression waits for the page or the video
    bool mediating = false;             // the external network counts its own impression
  };

  explicit XAdManager(std::weak_ptr<AdManagerView> adView) : adView_{std::move(adView)} {}

  void makeObservers();
  void makeVideoObserver();
  void request(const Url& url);

  // Steps of one answer.
  void startEngineIfExpected() const;
  void didReceiveAdInfo(const XAdInfo& answer);
  void takeOver(const XAdInfo& answer);
  [[nodiscard]] SlotFacts slotFacts(const AdManagerView& view) const;
  void conclude();
  void didFailWithError(const std::optional<Error>& error);

  // One for each verdict.
  void carryOut(const NoAd& verdict, const XAdInfo& answer);
  void carryOut(const EmptyAd& verdict, const XAdInfo& answer);
  void carryOut(const FollowRedirect& verdict, const XAdInfo& answer);
  void carryOut(const ShowImage& verdict, const XAdInfo& answer);
  void carryOut(const ShowHtml& verdict, const XAdInfo& answer);
  void carryOut(const RefuseEmptyPicture& verdict, const XAdInfo& answer);
  void carryOut(const PlayVast& verdict, const XAdInfo& answer);
  void carryOut(const Mediate& verdict, const XAdInfo& answer);

  // Renderers.
  void loadImageAdType(AdManagerView& view, const Url& imageUrl);
  void loadRichMediaAd(AdManagerView& view, const std::string& html);
  static void followScreen(AdManagerView& view);
  void loadVastAd(const std::string& text);
  void didConcludeVast();

  // Reports of the renderers.
  [[nodiscard]] bool webViewDidFinishRender(WebView& webView);
  void processImpressionTracking();
  void fail(const Error& error);

  std::weak_ptr<AdManagerView> adView_;
  std::shared_ptr<XServerCommunicator> serverCommunicator_;
  std::shared_ptr<const XServerCommunicatorDelegate> communicatorEvents_;
  std::shared_ptr<const WebViewAgentDelegate> webViewEvents_;
  std::shared_ptr<const XMRAIDBannerViewDelegate> bannerEvents_;
  std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents_;
  std::shared_ptr<XWebViewAgent> webViewAgent_;
  std::shared_ptr<VastRoad> vastRoad_;
  std::string slotName_;  // of the last load; empty before one
  Url baseUrl_;
  std::optional<std::string> clickThroughURL_;
  std::optional<std::string> impressionTrackingURL_;
  Progress progress_;
  bool requestRedirected_ = false;
  int redirectAnswers_ = 0;  // in a row
};

}  // namespace tavo
