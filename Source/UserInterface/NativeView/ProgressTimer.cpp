#include "UserInterface/NativeView/ProgressTimer.h"

#include <algorithm>

namespace tavo {

void ProgressTimer::start() {
  constexpr Seconds period{0.5};
  ticks_ = runLoop_->every(period, look_);
}

void ProgressTimer::stop() {
  ticks_.invalidate();
  between_.invalidate();
}

void ProgressTimer::lookAfter(Seconds delay, std::function<void()> look) {
  constexpr Seconds shortest{0.02};
  between_ = runLoop_->after(std::max(delay, shortest), std::move(look));
}

}  // namespace tavo
