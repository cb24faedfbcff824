#include "AdPlayer/Stage/HostTables.h"

#include <string>
#include <utility>

namespace tavo::adplayer {

namespace {

std::string describe(const std::optional<Error>& error) {
  if (!error) return "no error object";
  return std::to_string(error->code) + " " + error->description;
}

void failed(EventLog& log, const char* name, const std::optional<Error>& error) {
  log.add("callback", std::string{name} + " " + describe(error),
          {{"name", name},
           {"code", error ? std::to_string(error->code) : ""},
           {"domain", error ? error->domain : ""},
           {"description", error ? error->description : ""}});
}

// Lines for operations of each shape that the two tables have.
struct Lines {
  EventLog& log;

  template <typename Ad>
  std::function<void(Ad&)> plain(const char* name) const {
    return [&to = log, name](Ad&) { to.add("callback", name, {{"name", name}}); };
  }
  template <typename Ad>
  std::function<void(Ad&, int)> quartile(const char* name) const {
    return [&to = log, name](Ad&, int number) {
      to.add("callback", std::string{name} + " " + std::to_string(number), {{"name", name}});
    };
  }
  template <typename Ad>
  std::function<bool(Ad&, ClickToAction, const ClickToActionParameters&)> click(
      const char* name) const {
    return [&to = log, name](Ad&, ClickToAction action, const ClickToActionParameters&) {
      const auto number = std::to_string(static_cast<int>(action));
      to.add("callback", std::string{name} + " action " + number + " -> carried out",
             {{"name", name}, {"action", number}});
      return true;
    };
  }
  template <typename Ad>
  std::function<bool(Ad&, WebView&)> mayShow(const char* name) const {
    return [&to = log, name](Ad&, WebView&) {
      to.add("callback", std::string{name} + " -> yes", {{"name", name}});
      return true;
    };
  }
  template <typename Ad>
  std::function<void(Ad&, const VastAd&)> film(const char* name) const {
    return [&to = log, name](Ad&, const VastAd& ad) {
      to.add("callback", std::string{name} + " " + ad.title, {{"name", name}, {"title", ad.title}});
    };
  }
  void custom(const char* name, const Url& url) const {
    log.add("callback", std::string{name} + " " + url.text(),
            {{"name", name}, {"url", url.text()}});
  }
};

}  // namespace

XAdViewDelegate bannerTable(EventLog& log, HostOutcomes outcomes) {
  using Ad = XAdView;
  const Lines lines{log};
  XAdViewDelegate table;
  table.xAdViewDidLoad = [&log, loaded = std::move(outcomes.loaded)](Ad&) {
    log.add("callback", "xAdViewDidLoad", {{"name", "xAdViewDidLoad"}});
    loaded();
  };
  table.xAdViewDidFailWithError = [&log, told = std::move(outcomes.failed)](
                                      Ad&, const std::optional<Error>& error) {
    failed(log, "xAdViewDidFailWithError", error);
    told(error);
  };
  table.xAdViewDidClickOnAd = lines.plain<Ad>("xAdViewDidClickOnAd");
  table.xAdViewWillOpenInInAppBrowser = lines.plain<Ad>("xAdViewWillOpenInInAppBrowser");
  table.xAdViewWillCloseInAppBrowser = lines.plain<Ad>("xAdViewWillCloseInAppBrowser");
  table.xAdViewWillLeaveApplication = lines.plain<Ad>("xAdViewWillLeaveApplication");
  table.xAdDidExpand = lines.plain<Ad>("xAdDidExpand");
  table.xAdDidCollapse = lines.plain<Ad>("xAdDidCollapse");
  table.xAdViewDidDismissOnMemoryWarning = lines.plain<Ad>("xAdViewDidDismissOnMemoryWarning");
  table.xAdViewPrerollDidFinishWithPlayer = [&log](Ad&,
                                                   const std::shared_ptr<MoviePlayer>& player) {
    log.add("callback", "xAdViewPrerollDidFinishWithPlayer",
            {{"name", "xAdViewPrerollDidFinishWithPlayer"}});
    if (player) player->play();
  };
  table.xAdViewDidFinishQuartile = lines.quartile<Ad>("xAdViewDidFinishQuartile");
  table.xAdViewDidPauseVideo = lines.plain<Ad>("xAdViewDidPauseVideo");
  table.xAdViewDidResume = lines.plain<Ad>("xAdViewDidResume");
  table.xAdViewDidSkipVideo = lines.plain<Ad>("xAdViewDidSkipVideo");
  table.xAdViewDidRewind = lines.plain<Ad>("xAdViewDidRewind");
  table.xAdViewDidEnterFullScreen = lines.plain<Ad>("xAdViewDidEnterFullScreen");
  table.xAdViewDidExitFullScreen = lines.plain<Ad>("xAdViewDidExitFullScreen");
  table.xAdViewShouldDisplayAdOnWebViewFinishRender =
      lines.mayShow<Ad>("xAdViewShouldDisplayAdOnWebViewFinishRender");
  table.xAdViewShouldHandleCustomURL = [lines](Ad&, const Url& url) {
    lines.custom("xAdViewShouldHandleCustomURL", url);
    return true;
  };
  table.xAdViewShouldHandleClickToAction = lines.click<Ad>("xAdViewShouldHandleClickToAction");
  table.interstitialAdDismissed = lines.plain<Ad>("interstitialAdDismissed");
  table.interstitialAdDismissedOnMemoryWarning =
      lines.plain<Ad>("interstitialAdDismissedOnMemoryWarning");
  table.xAdViewDidBeginVastAd = lines.film<Ad>("xAdViewDidBeginVastAd");
  table.xAdViewDidOfferCompanions = [&log, offered = std::move(outcomes.companion)](
                                        Ad&, const auto& offers) {
    log.add("callback", "xAdViewDidOfferCompanions " + std::to_string(offers.size()),
            {{"name", "xAdViewDidOfferCompanions"}});
    if (offered) offered(*offers.front());
  };
  return table;
}

XAdInterstitialViewControllerDelegate interstitialTable(EventLog& log, HostOutcomes outcomes) {
  using Ad = XAdInterstitialViewController;
  const Lines lines{log};
  XAdInterstitialViewControllerDelegate table;
  table.xAdInterstitialDidLoad = [&log, loaded = std::move(outcomes.loaded)](Ad*) {
    log.add("callback", "xAdInterstitialDidLoad", {{"name", "xAdInterstitialDidLoad"}});
    loaded();
  };
  table.xAdInterstitialDidFailWithError = [&log, told = std::move(outcomes.failed)](
                                              Ad&, const std::optional<Error>& error) {
    failed(log, "xAdInterstitialDidFailWithError", error);
    told(error);
  };
  table.xAdInterstitialDidClick = lines.plain<Ad>("xAdInterstitialDidClick");
  table.xAdInterstitialDidEnterFullScreen = lines.plain<Ad>("xAdInterstitialDidEnterFullScreen");
  table.xAdInterstitialDidExitFullScreen = lines.plain<Ad>("xAdInterstitialDidExitFullScreen");
  table.xAdInterstitialDidSkipVideo = lines.plain<Ad>("xAdInterstitialDidSkipVideo");
  table.xAdInterstitialDidFinishQuartile = lines.quartile<Ad>("xAdInterstitialDidFinishQuartile");
  table.xAdInterstitialDidPauseVideo = lines.plain<Ad>("xAdInterstitialDidPauseVideo");
  table.xAdInterstitialDidResume = lines.plain<Ad>("xAdInterstitialDidResume");
  table.xAdInterstitialDidRewind = lines.plain<Ad>("xAdInterstitialDidRewind");
  table.xAdInterstitialDismissed = lines.plain<Ad>("xAdInterstitialDismissed");
  table.xAdInterstitialDidDismissOnMemoryWarning =
      lines.plain<Ad>("xAdInterstitialDidDismissOnMemoryWarning");
  table.xAdInterstitialWillOpenInInAppBrowser =
      lines.plain<Ad>("xAdInterstitialWillOpenInInAppBrowser");
  table.xAdInterstitialWillCloseInAppBrowser =
      lines.plain<Ad>("xAdInterstitialWillCloseInAppBrowser");
  table.xAdInterstitialWillLeaveApplication =
      lines.plain<Ad>("xAdInterstitialWillLeaveApplication");
  table.xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender =
      lines.mayShow<Ad>("xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender");
  table.xAdInterstitialViewControllerShouldHandleClickToAction =
      lines.click<Ad>("xAdInterstitialViewControllerShouldHandleClickToAction");
  table.xAdInterstitialViewControllerShouldHandleCustomURL = [lines](Ad&, const Url& url) {
    lines.custom("xAdInterstitialViewControllerShouldHandleCustomURL", url);
  };
  table.xAdInterstitialDidBeginVastAd = lines.film<Ad>("xAdInterstitialDidBeginVastAd");
  return table;
}

}  // namespace tavo::adplayer
