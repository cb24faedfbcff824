#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// The two time-outs of an exchange. libsoup's own only starts when nothing at all arrives and so
// never ends a body that drips; the deadline does. Main thread only.
class HttpWatchdog {
 public:
  // `idle` and `deadline` of zero stand for no bound. `expired` is called at most once, with what
  // happened in one sentence; it may destroy the watchdog.
  HttpWatchdog(std::shared_ptr<RunLoop> runLoop, Seconds idle, Seconds deadline,
               std::function<void(std::string)> expired);

  // Whether idleness may end the exchange before its deadline does.
  [[nodiscard]] bool watchesIdleness() const { return idleTimer_.isValid(); }

  // Something has arrived or could be sent. Costs no more than reading the clock.
  void touch() { lastActivity_ = runLoop_->now(); }

 private:
  void armIdleTimer(Seconds delay);
  void checkIdle();
  void expire(std::string reason);

  std::shared_ptr<RunLoop> runLoop_;
  Seconds idle_;
  std::function<void(std::string)> expired_;
  Seconds lastActivity_;
  Timer idleTimer_;
  Timer deadlineTimer_;
};

}  // namespace tavo::gtk
