#pragma once

#include <atomic>

#include <tavo/Export.h>

namespace tavo {

// The switch XGlobalConfiguration::enableDebugLogs, set and read like a boolean:
//
//   tavo::XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
//
// It belongs to its settings record. The debug log looks at the switch of the current runtime's
// record; another record's switch, or its end, changes nothing. Any thread, at any time; of an
// operation that is under way when the switch is thrown, what comes after that counts.
class TAVO_EXPORT DebugLogSwitch {
 public:
  DebugLogSwitch() = default;
  ~DebugLogSwitch() { *this = false; }
  DebugLogSwitch(const DebugLogSwitch&) = delete;
  DebugLogSwitch& operator=(const DebugLogSwitch&) = delete;

  DebugLogSwitch& operator=(bool enabled) {
    if (enabled_.exchange(enabled) != enabled) switchedOn_ += enabled ? 1 : -1;
    return *this;
  }
  operator bool() const {
    return enabled_;
  }  // NOLINT(google-explicit-constructor): it is a boolean

  // Whether any switch of the process is on. Every operation of the library asks, and nearly always
  // the answer is no; only after a yes somebody looks for the settings that count.
  [[nodiscard]] static bool isAnyOn() { return switchedOn_.load(std::memory_order_relaxed) > 0; }

 private:
  std::atomic<bool> enabled_{false};
  static inline std::atomic<int> switchedOn_{0};
};

}  // namespace tavo
