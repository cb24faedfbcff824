#pragma once

#include <functional>
#include <string>

namespace tavo {

// What happens when something that must never fail has failed: the reason is told to the platform's
// log, then the handler is called, which by default ends the process. Any thread.
class FatalFailure {
 public:
  // The one of the process.
  [[nodiscard]] static FatalFailure& sharedInstance();

  // Replaces the ending, for hosts with a way of their own to go down, and for tests. Set it before
  // the first failure. When it returns, the operation that failed returns without effect.
  std::function<void(const std::string& reason)> handler;

  void raise(const std::string& reason) const;
};

}  // namespace tavo
