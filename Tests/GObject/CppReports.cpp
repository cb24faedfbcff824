// Plays sample campaigns through the C++ door and prints what was told, one line a report, under
// the names that the interface for other languages has for them: CppReports DOMAIN
// PLACEMENT:CAMPAIGN...
#include <gtkmm.h>

#include <iostream>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/AdWindow.h>
#include <tavo/gtk/GtkPlatform.h>
#include <tavo/gtk/MovieSlot.h>

namespace {

using namespace tavo;
using Interstitial = XAdInterstitialViewController;

std::vector<std::string> told;

std::string nameOf(const std::optional<Error>& error) {
  return "failed " + (error ? std::to_string(error->code) + " " + error->description : "");
}

template <typename Teller>
auto line(const std::string& text) {
  return [text](Teller&) { told.push_back(text); };
}

const auto quartile = [](auto&, int number) {
  told.push_back("quartile " + std::to_string(number));
};
const auto review = [](auto&, WebView&) {
  told.emplace_back("review-page");
  return true;
};
const auto click = [](auto&, ClickToAction action, const ClickToActionParameters&) {
  told.push_back("clicked " + std::to_string(static_cast<int>(action)));
  return true;
};

std::shared_ptr<XAdViewDelegate> viewEvents() {
  using View = XAdView;
  return std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = line<View>("loaded"),
      .xAdViewDidFailWithError = [](View&, const auto& error) { told.push_back(nameOf(error)); },
      .xAdViewDidClickOnAd = line<View>("clicked 0"),
      .xAdViewWillOpenInInAppBrowser = line<View>("browser-opened"),
      .xAdViewWillCloseInAppBrowser = line<View>("browser-closed"),
      .xAdViewWillLeaveApplication = line<View>("leaves-application"),
      .xAdDidExpand = line<View>("expanded"),
      .xAdDidCollapse = line<View>("collapsed"),
      .xAdViewDidDismissOnMemoryWarning = line<View>("memory-low"),
      .xAdViewPrerollDidFinishWithPlayer = [](View&,
                                              const auto&) { told.emplace_back("finished"); },
      .xAdViewDidFinishQuartile = quartile,
      .xAdViewDidPauseVideo = line<View>("video-paused"),
      .xAdViewDidResume = line<View>("video-resumed"),
      .xAdViewDidSkipVideo = line<View>("video-skipped"),
      .xAdViewDidRewind = line<View>("video-rewound"),
      .xAdViewDidEnterFullScreen = line<View>("full-screen-entered"),
      .xAdViewDidExitFullScreen = line<View>("full-screen-left"),
      .xAdViewShouldDisplayAdOnWebViewFinishRender = review,
      .xAdViewShouldHandleClickToAction = click,
      .interstitialAdDismissed = line<View>("film-dismissed")});
}

// As the other road has them.
Limits sharedLimits() {
  Limits limits;
  limits.requestIdleTimeout = Seconds{8};
  limits.requestDeadline = Seconds{12};
  limits.wrapperChainBudget = Seconds{6};
  limits.firstFrameTimeout = limits.mediaProbeTimeout = limits.stallTimeout = Seconds{30};
  return limits;
}

bool wasTold(std::initializer_list<const char*> ends) {
  return std::any_of(told.begin(), told.end(), [&](const std::string& text) {
    return std::any_of(ends.begin(), ends.end(),
                       [&](const char* end) { return text.starts_with(end); });
  });
}

void runUntil(std::initializer_list<const char*> ends) {
  while (!wasTold(ends)) Glib::MainContext::get_default()->iteration(true);
}

void playInterstitial(Gtk::Window& window, const std::string& domain, const std::string& campaign) {
  using Ad = Interstitial;
  const auto ad = Ad::create();
  const auto present = [&](Ad* /*ad*/) {
    told.emplace_back("loaded");
    gtk::rootViewControllerOf(window)->presentViewController(ad, Animated::yes);
  };
  const auto events =
      std::make_shared<XAdInterstitialViewControllerDelegate>(XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad = present,
          .xAdInterstitialDidFailWithError =
              [](Ad&, const auto& error) { told.push_back(nameOf(error)); },
          .xAdInterstitialDidClick = line<Ad>("clicked 0"),
          .xAdInterstitialDidEnterFullScreen = line<Ad>("full-screen-entered"),
          .xAdInterstitialDidExitFullScreen = line<Ad>("full-screen-left"),
          .xAdInterstitialDidSkipVideo = line<Ad>("video-skipped"),
          .xAdInterstitialDidFinishQuartile = quartile,
          .xAdInterstitialDidPauseVideo = line<Ad>("video-paused"),
          .xAdInterstitialDidResume = line<Ad>("video-resumed"),
          .xAdInterstitialDidRewind = line<Ad>("video-rewound"),
          .xAdInterstitialDismissed = line<Ad>("dismissed"),
          .xAdInterstitialDidDismissOnMemoryWarning = line<Ad>("memory-low"),
          .xAdInterstitialWillOpenInInAppBrowser = line<Ad>("browser-opened"),
          .xAdInterstitialWillCloseInAppBrowser = line<Ad>("browser-closed"),
          .xAdInterstitialWillLeaveApplication = line<Ad>("leaves-application"),
          .xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender = review,
          .xAdInterstitialViewControllerShouldHandleClickToAction = click});
  ad->delegate.set(events);
  ad->loadWithDomainName(domain, campaign, "Full");
  runUntil({"loaded", "failed"});
  if (!wasTold({"loaded"})) return;
  if (campaign.ends_with("video")) runUntil({"quartile 2", "failed"});
  ad->closeInterstitialAd();
  runUntil({"dismissed", "failed"});
}

void playView(Gtk::Box& column, const std::string& domain, const std::string& campaign,
              bool isPreroll) {
  const auto view = XAdView::create({0, 0, 320, 50});
  gtk::AdSlot slot{view};
  const auto player = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
  gtk::MovieSlot movie{player};
  column.append(isPreroll ? movie : slot);
  if (isPreroll) view->setMoviePlayerInstance(player);
  const auto events = viewEvents();
  view->delegate.set(events);
  view->loadWithDomainName(domain, campaign, "Bottom1");
  if (isPreroll) {
    runUntil({"finished", "failed"});
  } else {
    runUntil({"loaded", "failed"});
  }
  column.remove(isPreroll ? movie : slot);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments{argv + 1, argv + argc};
  const std::string& domain = arguments.at(0);
  const auto application =
      Gtk::Application::create("com.example.reports", Gio::Application::Flags::NON_UNIQUE);
  gtk_init();
  Runtime runtime{gtk::makePlatform({.applicationId = "com.example.reports",
                                     .dataFolder = Glib::getenv("TAVO_DATA_FOLDER"),
                                     .assumeReachable = true,
                                     .limits = sharedLimits()})};
  Gtk::Window window;
  window.set_default_size(360, 640);
  Gtk::Box column{Gtk::Orientation::VERTICAL};
  window.set_child(column);
  window.present();
  for (std::size_t at = 1; at < arguments.size(); ++at) {
    const std::size_t colon = arguments[at].find(':');
    const std::string placement = arguments[at].substr(0, colon);
    const std::string campaign = arguments[at].substr(colon + 1);
    told.clear();
    if (placement == "interstitial") {
      playInterstitial(window, domain, campaign);
    } else {
      playView(column, domain, campaign, placement == "preroll");
    }
    for (const auto& text : told) std::cout << campaign << ": " << text << std::endl;
  }
}
