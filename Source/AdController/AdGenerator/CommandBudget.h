#pragma once

#include <optional>

#include <tavo/Date.h>

namespace tavo {

// Lets a creative's commands through at a rate that the host can bear: a burst at once, then so
// many a second. What comes in faster is dropped by the caller.
class CommandBudget {
 public:
  CommandBudget(double perSecond, int burst) : perSecond_{perSecond}, burst_{burst * 1.0} {}

  // Takes one command at the moment `now`; false: one too many.
  [[nodiscard]] bool take(Seconds now);

 private:
  double perSecond_;
  double burst_;
  double available_ = burst_;
  std::optional<Seconds> last_;
};

// Decides whether a creative may leave the application: once for each tap of a person, and without
// a tap at a low rate or not at all.
class LeavingGuard {
 public:
  struct Rules {
    double perSecond = 1;  // without a tap; 0: never
    bool needsTap = false;
    Seconds tapLifetime{1};
  };

  explicit LeavingGuard(const Rules& rules) : rules_{rules} {}

  void tapped(Seconds now) { lastTap_ = now; }
  // Takes one such action at the moment `now`; a true answer uses the tap up.
  [[nodiscard]] bool take(Seconds now);
  // The same for an action after which the person is still in the ad: it leaves the tap for what
  // the ad does in answer.
  [[nodiscard]] bool takeAndStay(Seconds now);

 private:
  [[nodiscard]] bool hasTap(Seconds now) const;

  Rules rules_;
  std::optional<Seconds> lastTap_;
  std::optional<Seconds> lastAction_;
};

}  // namespace tavo
