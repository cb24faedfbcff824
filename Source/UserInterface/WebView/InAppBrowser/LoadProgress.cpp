#include "UserInterface/WebView/InAppBrowser/LoadProgress.h"

#include <utility>

namespace tavo {

namespace {
constexpr Seconds patience{10};  // without any progress
constexpr Seconds tickPeriod{0.1};
constexpr Color lineColor{0.20F, 0.52F, 0.90F, 1};
}  // namespace

LoadProgress::LoadProgress(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<WebView> page)
    : runLoop_{std::move(runLoop)}, page_{std::move(page)} {
  setBackgroundColor(lineColor);
  setUserInteractionEnabled(false);
  setHidden(true);
}

void LoadProgress::place(double top, double width) {
  top_ = top;
  width_ = width;
  draw();
}

void LoadProgress::loadBegan() {
  lastProgress_ = 0;
  lastProgressAt_ = runLoop_->now();
  givenUp_ = false;
  timer_ = runLoop_->every(tickPeriod, [this] { tick(); });
  tick();
}

void LoadProgress::loadEnded() {
  timer_.invalidate();
  draw();
}

void LoadProgress::tick() {
  draw();
  const double progress = page_->estimatedProgress();
  if (progress != lastProgress_) {
    lastProgress_ = progress;
    lastProgressAt_ = runLoop_->now();
  } else if (runLoop_->now() - lastProgressAt_ >= patience) {
    timer_.invalidate();
    givenUp_ = page_->isLoading();
    if (givenUp_) page_->stopLoading();
  }
}

void LoadProgress::draw() {
  setHidden(!page_->isLoading());
  setFrame({0, top_, width_ * page_->estimatedProgress(), height});
}

}  // namespace tavo
