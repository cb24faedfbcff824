#pragma once

#include <functional>
#include <memory>

#include "Services/RunLoop.h"

namespace tavo {

// Looks at a playing video every half second, and beside that at a moment that must be met. A look
// may stop it or drop it. Main thread only.
class ProgressTimer {
 public:
  ProgressTimer(std::shared_ptr<RunLoop> runLoop, std::function<void()> look)
      : runLoop_{std::move(runLoop)}, look_{std::move(look)} {}

  void start();
  void stop();
  [[nodiscard]] bool isRunning() const { return ticks_.isValid(); }

  // A look of its own so long from now, in place of the one asked for before. At a moment that has
  // come, a little later: the video may be behind the clock.
  void lookAfter(Seconds delay, std::function<void()> look);

 private:
  const std::shared_ptr<RunLoop> runLoop_;
  const std::function<void()> look_;
  Timer ticks_;
  Timer between_;
};

}  // namespace tavo
