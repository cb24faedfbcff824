#include "UserInterface/Movie/MovieViewController.h"

#include <utility>

#include <tavo/MoviePlayerFactory.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Values/Translation.h"

namespace tavo {

std::shared_ptr<MovieViewController> MovieViewController::create(
    std::shared_ptr<Environment> environment, const Url& url, const Rect& frame) {
  std::shared_ptr<MovieViewController> controller{
      new MovieViewController{std::move(environment), frame}};
  controller->player_->setContentUrl(url);
  controller->player_->addClient(controller);
  return controller;
}

MovieViewController::MovieViewController(std::shared_ptr<Environment> environment,
                                         const Rect& frame)
    : player_{environment->platform().moviePlayers->create(frame)},
      closeButton_{std::move(environment)} {
  player_->shouldAutoplay = false;
}

MovieViewController::~MovieViewController() {
  closeButton_.remove();
  player_->removeFromSuperview();
}

void MovieViewController::viewDidLoad() {
  view()->setBackgroundColor(colors::black);
  view()->setAccessibilityLabel(translated("Video"));
  player_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  view()->addSubview(player_);
}

void MovieViewController::viewDidAppear(Animated /*animated*/) {
  player_->setFrame(view()->bounds());
  closeButton_.showClose(*player_, [this] { close(); });
  player_->prepareToPlay();
}

void MovieViewController::viewDidDisappear(Animated /*animated*/) {
  player_->setFullscreen(false);
  player_->stop();
}

bool MovieViewController::cancelOperation() {
  close();
  return true;
}

void MovieViewController::close() {
  if (presentingViewController() == nullptr) return;
  const auto held = shared_from_this();
  const auto presenter = presentingViewController()->shared_from_this();
  presenter->dismissViewController(Animated::yes);
}

void MovieViewController::moviePlaybackDidFinish(MoviePlayer& /*player*/,
                                                 MovieFinishReason /*reason*/,
                                                 const std::optional<Error>& error) {
  if (error) platformLog("Video: " + error->description, LogLevel::warning);
  close();
}

}  // namespace tavo
