#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Observer.h>

#include "AdController/AdGenerator/XWebViewAgent.h"
#include "AdInfo/XAdInfo.h"
#include "AdManager/AdManagerView.h"
#include "AdManager/AdVerdict.h"
#include "AdManager/AnswerImpression.h"
#include "AdManager/FilmRoad/FilmRoad.h"
#include "AdManager/HtmlSlots.h"
#include "AdManager/XAdManagerDelegate.h"
#include "Communicator/XServerCommunicator.h"
#include "OnlineRequest/AdAddress.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

namespace tavo {

// Works for one ad view: asks the server for an ad, decides what came back, makes the renderer for
// it, fires the impression and reports to its delegate, the ad view. Made with `create`; main
// thread only. An answer that arrives after the manager is gone is dropped.
class XAdManager : public std::enable_shared_from_this<XAdManager> {
 public:
  [[nodiscard]] static std::shared_ptr<XAdManager> create(
      std::shared_ptr<Environment> environment, std::weak_ptr<AdManagerView> adView,
      const std::shared_ptr<const XAdManagerDelegate>& delegate);

  Observer<XAdManagerDelegate> delegate;
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, which a pre-roll borrows
  bool isVastInterestitial = false;  // the last film that was asked for has the whole screen
  Url adUrl;                         // kept for whoever sets it

  // Asks the server for an ad. Every outcome reaches the delegate; offline it does so inside this
  // call.
  void loadAdWithDomainName(const AdAddress& address);

  // Asks again at the address that an answer named.
  void loadAdWithRedirectURL(const std::string& url);

  // What the last answer has brought: the base of its pages, and who sends its impression.
  [[nodiscard]] const Url& baseUrl() const { return baseUrl_; }
  [[nodiscard]] const std::shared_ptr<XAdTracker>& tracker() const { return tracker_; }

  // The renderers: each takes the slot from what stood there before, and does nothing without a
  // view. The answer's impression is not theirs to count.
  void loadImageAdTypeWithAdInfo(const XAdInfo& adInfo) {
    loadImageAdTypeWithURL(Url::fromText(adInfo.fileURL.value_or("")));
  }
  void loadImageAdTypeWithURL(const Url& url);
  void loadRichMediaAdWithAdInfo(const XAdInfo& adInfo, const std::string& htmlString) {
    loadRichMediaAdWithAdInfo(adInfo, htmlString, baseUrl_);
  }
  void loadRichMediaAdWithAdInfo(const XAdInfo& adInfo, const std::string& htmlString,
                                 const Url& baseUrl);
  void loadVastAdWithAdInfo(const XAdInfo& adInfo) { playVideo(adInfo.text.value_or("")); }

  // The video of the current answer; null when it is none or not there yet.
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const;

 private:
  // What carrying a verdict out has come to.
  enum class Outcome {
    unusable,  // the answer has nothing for this slot
    shown,     // its impression counts now
    later,     // its impression counts once the page or the video is there
    elsewhere  // it ended in a report, a new request or with another network
  };
  using Impression = std::shared_ptr<AnswerImpression>;

  XAdManager(std::shared_ptr<Environment> environment, std::weak_ptr<AdManagerView> adView);

  void makeObservers();
  void makeVideoObserver();
  void request(const Url& url);
  void inspect(const XAdInfo& answer, const SlotFacts& slot, const Verdict& verdict,
               AdManagerView& view) const;
  void startEngineIfExpected() const;

  // Steps of one answer.
  void didReceiveAdInfo(const std::shared_ptr<XAdInfo>& answer);
  void takeOver(const XAdInfo& answer);
  void reportWithoutView(const std::shared_ptr<XAdInfo>& answer);
  void follow(const FollowRedirect& verdict);
  [[nodiscard]] SlotFacts slotFacts(const AdManagerView& view) const;
  void conclude(Outcome outcome, AdManagerView& view, AnswerImpression& impression,
                bool requestRedirected);
  void didFailWithError(const std::optional<Error>& error);

  // One for each verdict.
  Outcome carryOut(const NoAd& verdict, AdManagerView& view);
  Outcome carryOut(const EmptyAd& verdict, AdManagerView& view);
  Outcome carryOut(const FollowRedirect& verdict, AdManagerView& view);
  Outcome carryOut(const ShowImage& verdict, AdManagerView& view);
  Outcome carryOut(const ShowHtml& verdict, AdManagerView& view);
  Outcome carryOut(const RefuseEmptyPicture& verdict, AdManagerView& view);
  Outcome carryOut(const PlayVast& verdict, AdManagerView& view);
  Outcome carryOut(const Mediate& verdict, AdManagerView& view);

  void showImage(AdManagerView& view, const Url& picture);
  void showPage(AdManagerView& view, const std::string& html, const Url& baseUrl);
  void playVideo(const std::string& document);
  [[nodiscard]] std::shared_ptr<FilmRoad> makeFilmRoad();
  // Whether the slot is a film's, whatever an answer brings: the host has lent its player, or the
  // film is there.
  [[nodiscard]] bool isForFilms() const { return moviePlayerInstance || videoView(); }
  void tellWithoutAd(AdManagerView& view, const std::function<void()>& report);
  void emptySlot(AdManagerView& view);
  static void followScreen(AdManagerView& view);

  // Reports of the renderers.
  [[nodiscard]] bool webViewDidFinishRender(WebView& webView);
  void didConcludeVast();
  void xStandardBannerAdDidFailWithError(const Error& error, const XMRAIDBannerView& /*banner*/) {
    fail(error);
  }
  void playerDidFinishWithError(const Error& error,
                                const std::shared_ptr<MoviePlayer>& /*player*/) {
    fail(error);
  }
  void dismissVastViewController();
  void dismissVastViewControllerOnMemoryWarning();
  [[nodiscard]] std::shared_ptr<const void> hold();
  void fail(const Error& error);
  void failWithoutAd();

  const std::shared_ptr<Environment> environment_;
  const std::weak_ptr<AdManagerView> adView_;
  HtmlSlots htmlSlots_;
  std::shared_ptr<XServerCommunicator> serverCommunicator_;
  std::shared_ptr<const XServerCommunicatorDelegate> communicatorEvents_;
  std::shared_ptr<const WebViewAgentDelegate> webViewEvents_;
  std::shared_ptr<const XMRAIDBannerViewDelegate> bannerEvents_;
  std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents_;
  std::shared_ptr<XWebViewAgent> webViewAgent_;
  std::shared_ptr<FilmRoad> vastRoad_;
  std::string slotName_;  // of the last load; empty before one
  Url baseUrl_;
  Url servedFrom_;
  std::optional<std::string> clickThroughURL_;
  std::optional<std::string> impressionTrackingURL_;
  std::shared_ptr<XAdTracker> tracker_;
  Impression impression_;       // of the answer in hand
  Impression pageImpression_;   // of the page that stands in the slot
  Impression videoImpression_;  // of the answer that the video road has
  bool requestRedirected_ = false;
  int redirectAnswers_ = 0;  // in a row
};

}  // namespace tavo
