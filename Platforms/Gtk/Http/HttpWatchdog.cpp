#include "Gtk/Http/HttpWatchdog.h"

#include <utility>

namespace tavo::gtk {

HttpWatchdog::HttpWatchdog(std::shared_ptr<RunLoop> runLoop, Seconds idle, Seconds deadline,
                           std::function<void(std::string)> expired)
    : runLoop_{std::move(runLoop)},
      idle_{idle},
      expired_{std::move(expired)},
      lastActivity_{runLoop_->now()} {
  const bool endsBefore = deadline <= Seconds{0} || idle < deadline;
  if (idle > Seconds{0} && endsBefore) armIdleTimer(idle);
  if (deadline > Seconds{0}) {
    deadlineTimer_ = runLoop_->after(deadline, [this] { expire("The exchange took too long."); });
  }
}

// One timer looks at the clock when it fires instead of being set anew for every byte.
void HttpWatchdog::armIdleTimer(Seconds delay) {
  idleTimer_ = runLoop_->after(delay, [this] { checkIdle(); });
}

void HttpWatchdog::checkIdle() {
  const Seconds left = lastActivity_ + idle_ - runLoop_->now();
  if (left > Seconds{0}) return armIdleTimer(left);
  expire("Nothing arrived for too long.");
}

void HttpWatchdog::expire(std::string reason) {
  idleTimer_.invalidate();
  deadlineTimer_.invalidate();
  const auto expired = std::move(expired_);
  expired(std::move(reason));
}

}  // namespace tavo::gtk
