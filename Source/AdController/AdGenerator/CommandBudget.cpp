#include "AdController/AdGenerator/CommandBudget.h"

#include <algorithm>

namespace tavo {

bool CommandBudget::take(Seconds now) {
  if (last_) available_ = std::min(burst_, available_ + (now - *last_).count() * perSecond_);
  last_ = now;
  if (available_ < 1) return false;
  available_ -= 1;
  return true;
}

bool LeavingGuard::hasTap(Seconds now) const {
  return lastTap_ && now - *lastTap_ <= rules_.tapLifetime;
}

bool LeavingGuard::takeAndStay(Seconds now) {
  const auto tap = lastTap_;
  const bool may = take(now);
  if (may) lastTap_ = tap;
  return may;
}

bool LeavingGuard::take(Seconds now) {
  const bool follows = hasTap(now);
  lastTap_.reset();
  const bool rested = rules_.perSecond > 0 &&
                      (!lastAction_ || (now - *lastAction_).count() * rules_.perSecond >= 1);
  if (!follows && (rules_.needsTap || !rested)) return false;
  lastAction_ = now;
  return true;
}

}  // namespace tavo
