#pragma once

namespace tavo::gtk {

// Follows the loads of one page's main document, so that each is reported to its end once. The
// engine's own reports are not enough: a failed load is reported as finished too, and reports of a
// page that was replaced arrive after the new load was asked for.
class LoadTracker {
 public:
  enum class Report { nothing, tell };

  // A load was asked for from outside; what the engine says of earlier ones does not count any
  // more.
  void requested() { state_ = State::requested; }
  // The load that was asked for was refused or given up; the page before stays.
  void dropped() { state_ = State::idle; }
  // A load was stopped from outside. One that the engine has not begun yet may still begin.
  void stopped() { state_ = state_ == State::requested ? State::stopped : State::idle; }

  // The engine's reports. Each answers whether it is to be told.
  [[nodiscard]] Report started() {
    if (state_ == State::stopped) return Report::nothing;
    state_ = State::provisional;
    return Report::tell;
  }
  void committed() {
    if (state_ == State::provisional) state_ = State::committed;
  }
  [[nodiscard]] Report finished() { return ended(State::committed); }
  [[nodiscard]] Report failed() {
    return state_ == State::provisional ? ended(State::provisional) : ended(State::committed);
  }

  // Something is under way.
  [[nodiscard]] bool isLoading() const { return state_ != State::idle && state_ != State::stopped; }
  // Asked for from outside and not begun by the engine.
  [[nodiscard]] bool isRequested() const { return state_ == State::requested; }
  // Begun, with the page before still in place.
  [[nodiscard]] bool isProvisional() const { return state_ == State::provisional; }

 private:
  enum class State { idle, requested, stopped, provisional, committed };

  Report ended(State from) {
    if (state_ != from) return Report::nothing;
    state_ = State::idle;
    return Report::tell;
  }

  State state_ = State::idle;
};

}  // namespace tavo::gtk
