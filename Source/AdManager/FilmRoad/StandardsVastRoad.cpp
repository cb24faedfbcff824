#include "AdManager/FilmRoad/StandardsVastRoad.h"

#include <utility>

#include <tavo/MoviePlayerFactory.h>

#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "UserInterface/StandardsVideo/CompanionOffer.h"

namespace tavo {

std::shared_ptr<StandardsVastRoad> StandardsVastRoad::create(FilmSlot slot, const Url& documentUrl,
                                                             Events events) {
  std::shared_ptr<StandardsVastRoad> road{
      new StandardsVastRoad{std::move(slot), std::move(events)}};
  road->makeObservers();
  const Relay relay{*road};
  road->finder_ = std::make_shared<VastFilmFinder>(road->slot_, documentUrl,
                                                   relay.call(&StandardsVastRoad::found));
  return road;
}

// A film that was sought ahead and is not going to be played is told so.
StandardsVastRoad::~StandardsVastRoad() {
  dropReady();
  dropFilm();
}

void StandardsVastRoad::dropReady() {
  const auto film = std::exchange(ready_, std::nullopt);
  if (!film) return;
  std::vector<std::string> addresses;
  for (const auto& one : film->ad->linear()->tracking) {
    if (one.event == "notUsed") addresses.push_back(one.url);
  }
  film->pings->once("notUsed", addresses);
}

void StandardsVastRoad::makeObservers() {
  using Self = StandardsVastRoad;
  const Relay relay{*this};
  XVASTVidoeViewDelegate table = *slot_.videoEvents;
  table.vastVideoAdDidLoad = relay.call(&Self::playing);
  table.playerDidFinishWithErrorWithPlayer = relay.call(&Self::didFail);
  table.prerollDidFinishWithPlayer = relay.call(&Self::prerollEnded);
  table.dismissVastViewController = relay.call(&Self::interstitialEnded);
  videoEvents_ = std::make_shared<XVASTVidoeViewDelegate>(std::move(table));
}

void StandardsVastRoad::loadVastAd(const std::string& text) {
  slot_.environment->platform().moviePlayers->warmUp();
  finder_->begin(text);
}

void StandardsVastRoad::found(std::optional<VastFilm> film) {
  if (!film) return exhausted();
  ready_ = std::move(film);
  if (isWaiting_) playNext();
}

void StandardsVastRoad::playNext() {
  const auto held = shared_from_this();
  const auto view = slot_.adView.lock();
  if (!view) return conclude();
  dropFilm();
  isWaiting_ = false;
  end_ = nullptr;
  shown_ = std::exchange(ready_, std::nullopt);
  slot_.takeView(*view);
  video_ = StandardsVideoView::create(slot_.environment, view->sceneView().bounds(), shown_->ad,
                                      shown_->pings);
  slot_.furnish(*video_);
  video_->movieURL = Url::fromText(shown_->url());
  video_->delegate.set(videoEvents_);
  FilmSlot::show(*view, video_);
  const auto video = video_;  // held: its first report may end the road
  (void)video->setUpPlayer();
  conclude();
}

// The first frame: the ad counts, and the next one is sought meanwhile.
void StandardsVastRoad::playing() {
  if (!video_ || !shown_) return;
  const auto video = video_;
  const bool first = !std::exchange(hasPlayed_, true);
  if (!isExhausted_ && !ready_ && !finder_->isSeeking()) finder_->next(true);
  const auto ad = shown_->ad;
  if (first && slot_.videoEvents->vastVideoAdDidLoad) {
    slot_.videoEvents->vastVideoAdDidLoad(*video);
  }
  if (video_ != video) return;  // the host has let go of it
  events_.began(*ad);
  if (video_ == video) offerCompanions();
}

void StandardsVastRoad::offerCompanions() {
  const auto slot = slot_.slotConfiguration;
  std::vector<std::shared_ptr<VastCompanionOffer>> offers;
  for (auto& companion :
       fittingCompanions(*shown_->ad, slot ? slot->companionSizes : std::vector<Size>{})) {
    offers.push_back(std::make_shared<CompanionOffer>(
        std::move(companion), CompanionOffer::Settings{slot_.environment, shown_->pings,
                                                       "companion " + std::to_string(offers.size()),
                                                       [weak = slot_.adView](const Url& url) {
                                                         if (const auto view = weak.lock())
                                                           view->openUrlInBrowser(url);
                                                       }}));
  }
  if (!offers.empty()) events_.companions(offers);
}

// Before its first frame a film that fails makes room for another ad, and nobody hears of it.
void StandardsVastRoad::didFail(const Error& error, const std::shared_ptr<MoviePlayer>& host) {
  if (!video_ || !shown_) return;
  const auto code = isTimeout(error) ? VastErrorCode::mediaTimeout : VastErrorCode::mediaProblem;
  finder_->tellFailure(code, *shown_, error);
  if (!video_->hasStarted()) {
    isWaiting_ = true;
    return finder_->next(false);
  }
  if (isExhausted_ && !ready_) {
    return slot_.videoEvents->playerDidFinishWithErrorWithPlayer(error, host);
  }
  isWaiting_ = true;
  if (ready_ && slot_.isInterstitial()) playNext();
}

void StandardsVastRoad::prerollEnded(const std::shared_ptr<MoviePlayer>& host) {
  goOn([this, host] { slot_.videoEvents->prerollDidFinishWithPlayer(host); });
}

void StandardsVastRoad::interstitialEnded() {
  goOn([this] { slot_.videoEvents->dismissVastViewController(); });
}

// A film has left its player. What a person has closed, and what the system has ended, is the end
// of everything; the skip of a pre-roll is told only after its end, so the next turn decides.
void StandardsVastRoad::goOn(const std::function<void()>& end) {
  const bool over = isExhausted_ && !ready_ && (hasPlayed_ || hasFailed_);
  if (over || !video_) return end();
  end_ = end;
  slot_.environment->platform().runLoop->post([weak = weak_from_this(), video = video_] {
    const auto self = weak.lock();
    if (!self || self->video_ != video) return;
    if (!video->makesRoom() && !self->isWaiting_) {
      self->dropReady();
      self->isExhausted_ = true;
    }
    self->isWaiting_ = true;
    if (self->ready_) return self->playNext();
    if (self->isExhausted_) self->exhausted();
  });
}

void StandardsVastRoad::dropFilm() {
  std::shared_ptr<XVASTVideoView> film = std::exchange(video_, nullptr);
  FilmSlot::drop(film);
}

void StandardsVastRoad::exhausted() {
  const auto held = shared_from_this();
  isExhausted_ = true;
  if (!isWaiting_) return;
  isWaiting_ = false;
  if (!hasPlayed_ && (finder_->hasFailed() || !end_)) {
    hasFailed_ = true;
    if (slot_.isInterstitial()) dropFilm();
    events_.failed(finder_->reason());
  }
  if (const auto end = std::exchange(end_, nullptr)) end();
  conclude();
}

void StandardsVastRoad::conclude() {
  if (!std::exchange(concluded_, true)) events_.concluded();
}

}  // namespace tavo
