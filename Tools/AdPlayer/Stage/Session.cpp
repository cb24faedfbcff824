#include "AdPlayer/Stage/Session.h"

#include <utility>

#include <tavo/Runtime.h>
#include <tavo/gtk/AdWindow.h>

#include "AdPlayer/Stage/HostTables.h"
#include "Scene/Window.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

namespace {

std::string describe(MobileAdSubTypes subType) {
  switch (subType) {
    case MobileAdSubTypes::unknown:
      return "nothing to draw";
    case MobileAdSubTypes::image:
      return "image";
    case MobileAdSubTypes::richMediaBanner:
      return "rich media in a banner";
    case MobileAdSubTypes::richMediaInterstitial:
      return "rich media in an interstitial";
    case MobileAdSubTypes::vastInterstitial:
      return "VAST video in an interstitial";
    case MobileAdSubTypes::vastBanner:
      return "VAST video in a player of the host";
    case MobileAdSubTypes::redirectImageBanner:
      return "redirect answered with an image";
    case MobileAdSubTypes::redirectHtmlBanner:
      return "redirect answered with HTML";
    case MobileAdSubTypes::redirectInterstitial:
      return "redirect in an interstitial";
  }
  return "unknown";
}

std::shared_ptr<WebView> lastPageIn(const View& view) {
  std::shared_ptr<WebView> last;
  for (const auto& subview : view.subviews()) {
    if (auto page = std::dynamic_pointer_cast<WebView>(subview)) last = std::move(page);
    if (auto below = lastPageIn(*subview)) last = std::move(below);
  }
  return last;
}

}  // namespace

std::string_view nameOf(Outcome outcome) {
  if (outcome == Outcome::loaded) return "loaded";
  return outcome == Outcome::failed ? "failed" : "nothing";
}

Session::Session(Gtk::Window& window, Phone& phone, EventLog& log)
    : window_{window}, phone_{phone}, log_{log} {}

Session::~Session() { end(); }

void Session::load(const PlayPlan& plan, const std::shared_ptr<XAdSlotConfiguration>& settings) {
  end();
  ++load_;
  outcome_ = Outcome::none;
  if (plan.standards) settings->standardsMode = true;
  log_.begin();
  log_.add("step", "load " + plan.title,
           {{"domain", plan.domain},
            {"page", plan.page},
            {"position", plan.position},
            {"placement", adserver::nameOf(plan.placement)},
            {"width", std::to_string(static_cast<int>(plan.size.width))},
            {"height", std::to_string(static_cast<int>(plan.size.height))},
            {"standards mode", settings->standardsMode.value_or(false) ? "yes" : "no"}});
  if (plan.placement == Placement::interstitial) {
    loadInterstitial(plan, settings);
  } else {
    loadBanner(plan, settings);
  }
}

void Session::end() {
  if (interstitial_) {
    interstitial_->delegate.set(nullptr);
    interstitial_->closeInterstitialAd();
    interstitial_->releaseMemory();
  }
  interstitial_.reset();
  if (const auto& view = phone_.adView()) {
    view->delegate.set(nullptr);
    view->releaseMemory();
  }
  phone_.clear();
}

void Session::loadBanner(const PlayPlan& plan,
                         const std::shared_ptr<XAdSlotConfiguration>& settings) {
  const auto view = phone_.makeSlot(plan.size);
  if (plan.placement == Placement::preroll) phone_.lendPlayer(film);
  bannerEvents_ = std::make_shared<XAdViewDelegate>(bannerTable(
      log_,
      {.loaded = [this] { conclude(Outcome::loaded, std::nullopt); },
       .failed = [this](const auto& error) { conclude(Outcome::failed, error); },
       .companion = [this](VastCompanionOffer& offer) { phone_.addCompanion(offer.view()); }}));
  view->delegate.set(bannerEvents_);
  view->setSlotConfiguration(settings);
  view->loadWithDomainName(plan.domain, plan.page, plan.position, plan.keywords, plan.query);
}

void Session::loadInterstitial(const PlayPlan& plan,
                               const std::shared_ptr<XAdSlotConfiguration>& settings) {
  phone_.clear();
  interstitial_ = XAdInterstitialViewController::create();
  interstitialEvents_ = std::make_shared<XAdInterstitialViewControllerDelegate>(interstitialTable(
      log_, {.loaded =
                 [this] {
                   present();
                   conclude(Outcome::loaded, std::nullopt);
                 },
             .failed = [this](const auto& error) { conclude(Outcome::failed, error); },
             .companion = {}}));
  interstitial_->delegate.set(interstitialEvents_);
  interstitial_->slotConfiguration = settings;
  interstitial_->loadWithDomainName(plan.domain, plan.page, plan.position, plan.keywords,
                                    plan.query);
}

void Session::present() {
  const auto root = gtk::rootViewControllerOf(window_);
  if (root) root->presentViewController(interstitial_, Animated::yes);
}

void Session::close() {
  log_.add("step", "close");
  if (interstitial_) {
    interstitial_->closeInterstitialAd();
  } else if (const auto view = adView(); view && view->isAdExpanded()) {
    view->closeButtonPressed();
  }
}

std::string Session::classification() const {
  if (outcome_ == Outcome::none) return {};
  if (interstitial_) return describe(interstitial_->mobileAdSubTypes());
  const auto view = adView();
  if (!view) return {};
  return view->isMediationAdServed() ? "handed to another network"
                                     : describe(view->mobileAdSubTypes());
}

std::shared_ptr<XAdView> Session::adView() const {
  return interstitial_ ? interstitial_->xadView() : phone_.adView();
}

// The one that a person sees: a second page lies above the first.
std::shared_ptr<WebView> Session::page() const {
  const auto view = adView();
  if (!view) return nullptr;
  const auto root = gtk::rootViewControllerOf(window_);
  const auto window = root ? root->view()->window() : nullptr;
  auto above = window && view->isAdExpanded() ? lastPageIn(*window) : nullptr;
  return above ? above : view->webViewInstance();
}

// The report that brings it may be in the middle of anything.
void Session::conclude(Outcome outcome, const std::optional<Error>& error) {
  if (outcome_ != Outcome::none) return;
  outcome_ = outcome;
  const std::string why =
      error ? ": " + std::to_string(error->code) + " " + error->description : "";
  log_.add("outcome", std::string{nameOf(outcome)} + why, {{"taken for", classification()}});
  Runtime::current().platform().runLoop->post([this, load = load_, outcome, called = concluded] {
    if (called && load == load_) called(outcome);
  });
}

}  // namespace tavo::adplayer
