#pragma once

#include <atomic>

namespace tavo {

// Whether the debug log is on. Every operation asks, so the answer is one flag of the process that
// can be read without finding the settings first; it goes off with the settings that switched it
// on.
class DebugLogSwitch {
 public:
  DebugLogSwitch() = default;
  ~DebugLogSwitch() { enabled_ = false; }
  DebugLogSwitch(const DebugLogSwitch&) = delete;
  DebugLogSwitch& operator=(const DebugLogSwitch&) = delete;

  DebugLogSwitch& operator=(bool enabled) {
    enabled_ = enabled;
    return *this;
  }
  operator bool() const { return isOn(); }  // NOLINT(google-explicit-constructor): it is a boolean

  // Any thread.
  [[nodiscard]] static bool isOn() { return enabled_.load(std::memory_order_relaxed); }

 private:
  static inline std::atomic<bool> enabled_{false};
};

}  // namespace tavo
