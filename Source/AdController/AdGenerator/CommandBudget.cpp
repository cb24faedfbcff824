#include "AdController/AdGenerator/CommandBudget.h"

#include <algorithm>
#include <utility>

namespace tavo {

bool CommandBudget::take(Seconds now) {
  if (last_) available_ = std::min(burst_, available_ + (now - *last_).count() * perSecond_);
  last_ = now;
  if (available_ < 1) return false;
  available_ -= 1;
  return true;
}

bool LeavingGuard::take(Seconds now) {
  const auto tap = std::exchange(lastTap_, std::nullopt);
  const bool follows = tap && now - *tap <= rules_.tapLifetime;
  const bool rested = rules_.perSecond > 0 &&
                      (!lastAction_ || (now - *lastAction_).count() * rules_.perSecond >= 1);
  if (!follows && (rules_.needsTap || !rested)) return false;
  lastAction_ = now;
  return true;
}

}  // namespace tavo
