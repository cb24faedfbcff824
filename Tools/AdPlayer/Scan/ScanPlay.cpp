#include "AdPlayer/Scan/ScanPlay.h"

#include <algorithm>
#include <utility>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/gtk/AdWindow.h>

#include "AdPlayer/Scan/EngineProcesses.h"
#include "AdPlayer/Screenshot.h"

namespace tavo::adplayer {

namespace {

constexpr Seconds pictureDistance{1.0 / 30};
constexpr Seconds processorDistance{0.5};
constexpr Seconds settling{1};  // for the pings of what has just ended
constexpr int phoneWidth = 360;
constexpr int phoneHeight = 640;

}  // namespace

ScanPlay::ScanPlay(ScanSubject subject, ScanSettings settings,
                   std::function<void(Recording)> finished)
    : subject_{std::move(subject)}, settings_{std::move(settings)}, finished_{std::move(finished)} {
  recording_.name = subject_.name;
  recording_.variation = settings_.variation;
  recording_.placement = subject_.placement;
  recording_.size = subject_.size;
  recording_.server = subject_.server;
  const bool fills = subject_.placement == adserver::Placement::interstitial;
  window_.set_default_size(
      std::max(fills ? 1 : phoneWidth, static_cast<int>(subject_.size.width)),
      std::max(fills ? 1 : phoneHeight, static_cast<int>(subject_.size.height)));
  window_.set_title(subject_.name);
  window_.set_child(column_);
}

ScanPlay::~ScanPlay() {
  // The slot before its view's observer, and both before the window that they stand in.
  if (slot_) column_.remove(*slot_);
  if (movie_) column_.remove(*movie_);
}

void ScanPlay::start() {
  window_.present();
  watchLibrary();
  before_ = engineProcessorSeconds();
  start_ = runLoop_->now();
  endAfter(settings_.patience);
  lookTimer_ = runLoop_->every(pictureDistance, [this] { look(); });
  processorTimer_ = runLoop_->every(processorDistance, [this] { measureProcessors(); });
  if (subject_.placement == adserver::Placement::interstitial) {
    loadInterstitial();
  } else {
    loadBanner();
  }
}

void ScanPlay::watchLibrary() {
  auto& inspection = Inspection::sharedInstance();
  inspection.pageProbe = probe(settings_.pretence);
  inspection_ = std::make_shared<InspectionObserver>(
      InspectionObserver{.inspectionDidSee = [this](const InspectionEvent& event) {
        if (isOver_) return;
        isFilm_ = isFilm_ || event.kind == InspectionKind::media;
        recording_.events.push_back(event);
        recording_.events.back().time = event.time - start_;
        endIfEnough();
      }});
  inspection.observer.set(inspection_);
  pings_ = std::make_shared<TrackingLedgerObserver>(
      TrackingLedgerObserver{.pingDidChange = [this](const PingRecord& ping) {
        if (isOver_) return;
        const auto known =
            std::find_if(recording_.pings.begin(), recording_.pings.end(),
                         [&](const PingRecord& one) { return one.number == ping.number; });
        if (known == recording_.pings.end()) {
          recording_.pings.push_back(ping);
        } else {
          *known = ping;
        }
        endIfEnough();
      }});
  TrackingLedger::sharedInstance().observer.set(pings_);
}

void ScanPlay::loadBanner() {
  view_ = XAdView::create({0, 0, subject_.size.width, subject_.size.height});
  slot_ = std::make_unique<gtk::AdSlot>(view_);
  column_.append(*slot_);
  if (subject_.placement == adserver::Placement::preroll) {
    const auto& makers = Runtime::current().platform().moviePlayers;
    const double width = std::max(subject_.size.width, 320.0);
    const auto player = makers->create({0, 0, width, width * 9 / 16});
    movie_ = std::make_unique<gtk::MovieSlot>(player);
    column_.prepend(*movie_);
    view_->setMoviePlayerInstance(player);
  }
  bannerEvents_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = [this](XAdView&) { loaded(); },
      .xAdViewDidFailWithError = [this](XAdView&,
                                        const std::optional<Error>& error) { failed(error); },
      .xAdViewPrerollDidFinishWithPlayer =
          [this](XAdView&, const std::shared_ptr<MoviePlayer>&) { filmEnded(); }});
  view_->delegate.set(bannerEvents_);
  view_->loadWithDomainName(subject_.domain, subject_.page, subject_.position, {}, subject_.query);
}

void ScanPlay::loadInterstitial() {
  interstitial_ = XAdInterstitialViewController::create();
  interstitialEvents_ =
      std::make_shared<XAdInterstitialViewControllerDelegate>(XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad =
              [this](XAdInterstitialViewController*) {
                gtk::rootViewControllerOf(window_)->presentViewController(interstitial_,
                                                                          Animated::no);
                loaded();
              },
          .xAdInterstitialDidFailWithError =
              [this](XAdInterstitialViewController&, const std::optional<Error>& error) {
                failed(error);
              },
          .xAdInterstitialDismissed = [this](XAdInterstitialViewController&) { filmEnded(); }});
  interstitial_->delegate.set(interstitialEvents_);
  interstitial_->loadWithDomainName(subject_.domain, subject_.page, subject_.position, {},
                                    subject_.query);
}

Seconds ScanPlay::now() const { return runLoop_->now() - start_; }

void ScanPlay::loaded() {
  if (recording_.loaded || isOver_) return;
  recording_.loaded = now();
  endAfter(isFilm_ ? settings_.longest : settings_.watching);
  endIfEnough();
}

void ScanPlay::failed(const std::optional<Error>& error) {
  if (isOver_) return;
  recording_.failure =
      error ? std::to_string(error->code) + " " + error->description : "a failure without an error";
  endAfter(settling);
  endIfEnough();
}

void ScanPlay::filmEnded() {
  if (isFilm_) endAfter(settling);
}

void ScanPlay::look() {
  if (isOver_ || !recording_.loaded) return;
  Gtk::Widget& shown = slot_ ? static_cast<Gtk::Widget&>(*slot_) : window_;
  auto luminance = Screenshot{shown}.luminance(Recording::cells);
  if (!luminance.empty()) recording_.lights.push_back({now(), std::move(luminance)});
  endIfEnough();
}

// A process that ends takes its count along, so it is asked again and again.
void ScanPlay::measureProcessors() {
  for (const auto& [process, seconds] : engineProcessorSeconds()) processors_[process] = seconds;
}

void ScanPlay::endAfter(Seconds time) {
  end_ = runLoop_->after(time, [this] { finish(); });
}

// In a turn of its own: this is asked from the midst of what the library does.
void ScanPlay::endIfEnough() {
  if (settings_.isEnough && settings_.isEnough(recording_)) endAfter(Seconds{0});
}

void ScanPlay::finish() {
  if (std::exchange(isOver_, true)) return;
  measureProcessors();
  recording_.length = now();
  for (const auto& [process, seconds] : processors_) {
    const auto known = before_.find(process);
    recording_.processorTime += Seconds{seconds - (known == before_.end() ? 0 : known->second)};
  }
  lookTimer_ = {};
  processorTimer_ = {};
  if (interstitial_ && interstitial_->presentingViewController() != nullptr) {
    interstitial_->closeInterstitialAd();
  }
  // The last statement: whoever hears of it may drop this.
  finished_(std::move(recording_));
}

}  // namespace tavo::adplayer
