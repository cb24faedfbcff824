#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>

#include <tavo/Date.h>

namespace tavo::gtk {

// How often the pages of one owner may take a web process down with them before no new one is
// started for a while. Main thread only.
class ReloadBudget {
 public:
  explicit ReloadBudget(int deathsPerMinute) : limit_{deathsPerMinute} {}

  void processEnded(Seconds now) { deaths_.push_back(now); }

  [[nodiscard]] bool mayLoad(Seconds now) {
    forget(now);
    return deaths_.size() <= static_cast<std::size_t>(std::max(limit_, 0));
  }

  // Nothing has happened for a minute.
  [[nodiscard]] bool isFresh(Seconds now) {
    forget(now);
    return deaths_.empty();
  }

 private:
  void forget(Seconds now) {
    while (!deaths_.empty() && now - deaths_.front() >= Seconds{60}) deaths_.pop_front();
  }

  int limit_;
  std::deque<Seconds> deaths_;
};

}  // namespace tavo::gtk
