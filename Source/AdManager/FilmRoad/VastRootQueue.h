#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "Runtime/Environment.h"

namespace tavo {

class RunLoop;

// Lets the loads that parse into the shared VAST root go one after the other: while one waits for
// its wrappers, the next must not empty the root. One per environment; main thread only.
class VastRootQueue {
 public:
  // Held by a load for as long as it parses; dropping it lets the next load begin.
  using Turn = std::shared_ptr<void>;
  using Load = std::function<void(Turn turn)>;

  explicit VastRootQueue(Environment& environment);

  // Calls `load` with its turn: at once when nobody has one, else when those before are done.
  void enter(Load load);

 private:
  struct State {
    std::weak_ptr<RunLoop> runLoop;  // a turn may be held longer than the platform lives
    std::deque<Load> waiting;
    bool taken = false;
  };

  static void begin(const std::shared_ptr<State>& state, const Load& load);
  static void next(const std::shared_ptr<State>& state);

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace tavo
