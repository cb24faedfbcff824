#include "UserInterface/NativeView/SkipProgress.h"

namespace tavo {

SkipProgress::Step SkipProgress::at(double time) const {
  Step step;
  if (controlShown_) return step;
  const float delay = point_.skipDelay;
  if (delay > 0) step.countdown = countdown(delay, time);
  step.control = delay >= 0 && time >= static_cast<double>(delay);
  return step;
}

bool SkipProgress::isCounting(double time, double duration) const {
  return duration > 0 && !countdown(point_.skipDelay, time).empty() &&
         static_cast<double>(point_.skipDelay) <= duration;
}

}  // namespace tavo
