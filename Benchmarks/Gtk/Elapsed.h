#pragma once

#include <chrono>

namespace tavo::benchmark {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>{Clock::now() - start}.count();
}

}  // namespace tavo::benchmark
