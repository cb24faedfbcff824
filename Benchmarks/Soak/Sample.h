#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tavo::benchmark {

// What a host and all that it has started hold at one moment.
struct Sample {
  double minutes = 0;  // since the start
  double rounds = 0;   // since the start
  double hostMegabytes = 0;
  double familyMegabytes = 0;  // what processes share counts in parts
  double descriptors = 0;      // the host's
  double threads = 0;          // the host's
  double processes = 0;        // beside the host
  double wakeUpsASecond = 0;   // of the host's main thread, since the last sample
};

struct Column {
  std::string_view name;
  double Sample::*value;
};

inline constexpr std::array columns{
    Column{"minutes", &Sample::minutes},         Column{"rounds", &Sample::rounds},
    Column{"host MB", &Sample::hostMegabytes},   Column{"all MB", &Sample::familyMegabytes},
    Column{"descriptors", &Sample::descriptors}, Column{"threads", &Sample::threads},
    Column{"processes", &Sample::processes},     Column{"wake-ups/s", &Sample::wakeUpsASecond},
};
inline constexpr std::size_t firstMeasured = 2;  // the columns before it say when

// Takes samples of this process.
class Sampler {
 public:
  [[nodiscard]] Sample take(int rounds);

 private:
  const double start_ = seconds();
  double lastTime_ = start_;
  double lastWakeUps_ = wakeUps();

  static double seconds();
  static double wakeUps();
};

}  // namespace tavo::benchmark
