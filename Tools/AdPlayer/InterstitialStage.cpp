#include "AdPlayer/InterstitialStage.h"

#include <tavo/gtk/AdWindow.h>

namespace tavo::adplayer {

InterstitialStage::InterstitialStage(Gtk::Window& window, EventReport& report,
                                     std::function<void(Outcome)> concluded)
    : window_{window}, report_{report}, concluded_{std::move(concluded)} {
  XAdInterstitialViewControllerDelegate events;
  addOutcomes(events);
  addLines(events);
  events_ = std::make_shared<XAdInterstitialViewControllerDelegate>(std::move(events));
  controller_->delegate.set(events_);
}

void InterstitialStage::addOutcomes(XAdInterstitialViewControllerDelegate& events) {
  events.xAdInterstitialDidLoad = [this](Controller*) {
    report_.add("callback", "xAdInterstitialDidLoad:");
    present();
    concluded_(Outcome::loaded);
  };
  events.xAdInterstitialDidFailWithError = [this](Controller&, const std::optional<Error>& error) {
    report_.add("callback",
                "xAdInterstitial:didFailWithError: " +
                    (error ? std::to_string(error->code) + " " + error->description : "none"));
    concluded_(Outcome::failed);
  };
}

void InterstitialStage::addLines(XAdInterstitialViewControllerDelegate& events) {
  const auto line = [this](const char* name) {
    return [this, name](Controller&) { report_.add("callback", name); };
  };
  events.xAdInterstitialDidClick = line("xAdInterstitialDidClick:");
  events.xAdInterstitialDidSkipVideo = line("xAdInterstitial:didSkipVideo:");
  events.xAdInterstitialDidPauseVideo = line("xAdInterstitial:didPauseVideo:");
  events.xAdInterstitialDidResume = line("xAdInterstitial:didResume:");
  events.xAdInterstitialDismissed = line("xAdInterstitialDismissed:");
  events.xAdInterstitialDidDismissOnMemoryWarning =
      line("xAdInterstitialDidDismissOnMemoryWarning:");
  events.xAdInterstitialWillOpenInInAppBrowser = line("xAdInterstitialWillOpenInInAppBrowser:");
  events.xAdInterstitialWillCloseInAppBrowser = line("xAdInterstitialWillCloseInAppBrowser:");
  events.xAdInterstitialWillLeaveApplication = line("xAdInterstitialWillLeaveApplication:");
  events.xAdInterstitialDidFinishQuartile = [this](Controller&, int quartile) {
    report_.add("callback", "xAdInterstitial:didFinishQuartile: " + std::to_string(quartile));
  };
  events.xAdInterstitialViewControllerShouldHandleCustomURL = [this](Controller&, const Url& url) {
    report_.add("callback", "xAdInterstitialViewController:shouldHandleCustomURL: " + url.text());
  };
}

void InterstitialStage::present() {
  gtk::rootViewControllerOf(window_)->presentViewController(controller_, Animated::yes);
}

void InterstitialStage::close() {
  if (controller_->presentingViewController() != nullptr) controller_->closeInterstitialAd();
}

}  // namespace tavo::adplayer
