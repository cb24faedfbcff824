#pragma once

#include <chrono>

namespace tavo {

// A point in calendar time.
using Date = std::chrono::system_clock::time_point;

// A length of time in seconds, fractions included.
using Seconds = std::chrono::duration<double>;

}  // namespace tavo
