#include "AdManager/VastRootQueue.h"

#include <utility>

#include <tavo/Runtime.h>

#include "Runtime/Environment.h"
#include "Services/RunLoop.h"

namespace tavo {

VastRootQueue& VastRootQueue::shared() {
  return Runtime::current().environment()->shared<VastRootQueue>();
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
  const std::weak_ptr<RunLoop> loop = Runtime::current().platform().runLoop;
  load(Turn{nullptr, [weak = std::weak_ptr<State>{state}, loop](void*) {
              const auto runLoop = loop.lock();
              if (!runLoop) return;
              runLoop->post([weak] {
                if (const auto held = weak.lock()) next(held);
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
