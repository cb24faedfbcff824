#include "AdManager/FilmRoad/VastRootQueue.h"

#include <utility>

#include "Services/RunLoop.h"

namespace tavo {

VastRootQueue::VastRootQueue(Environment& environment) {
  state_->runLoop = environment.platform().runLoop;
}

void VastRootQueue::enter(Load load) {
  if (state_->taken) {
    state_->waiting.push_back(std::move(load));
  } else {
    begin(state_, load);
  }
}

// The next load begins in a turn of its own: the one before may be in the middle of its last step.
void VastRootQueue::begin(const std::shared_ptr<State>& state, const Load& load) {
  state->taken = true;
  load(Turn{nullptr, [weak = std::weak_ptr<State>{state}](void*) {
              const auto held = weak.lock();
              const auto runLoop = held ? held->runLoop.lock() : nullptr;
              if (!runLoop) return;
              runLoop->post([weak] {
                if (const auto queue = weak.lock()) next(queue);
              });
            }});
}

void VastRootQueue::next(const std::shared_ptr<State>& state) {
  state->taken = false;
  if (state->waiting.empty()) return;
  const Load load = std::move(state->waiting.front());
  state->waiting.pop_front();
  begin(state, load);
}

}  // namespace tavo
