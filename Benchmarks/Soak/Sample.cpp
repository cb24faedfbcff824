#include "Sample.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ProcessUse.h"

namespace tavo::benchmark {

namespace {

double entries(const char* folder) {
  return static_cast<double>(std::distance(std::filesystem::directory_iterator{folder}, {}));
}

}  // namespace

double Sampler::seconds() {
  return std::chrono::duration<double>{std::chrono::steady_clock::now().time_since_epoch()}.count();
}

// The times for which the thread that runs the loop went to sleep.
double Sampler::wakeUps() {
  std::ifstream file{"/proc/self/status"};
  std::string word;
  double count = 0;
  while (file >> word) {
    if (word == "voluntary_ctxt_switches:") file >> count;
  }
  return count;
}

Sample Sampler::take(int rounds) {
  const double time = seconds();
  const double woken = wakeUps();
  const Sample sample{.minutes = (time - start_) / 60,
                      .rounds = static_cast<double>(rounds),
                      .hostMegabytes = proportionalMegabytes(getpid()),
                      .familyMegabytes = familyMegabytes(),
                      .descriptors = entries("/proc/self/fd"),
                      .threads = entries("/proc/self/task"),
                      .processes = static_cast<double>(test::descendants().size()),
                      .wakeUpsASecond = (woken - lastWakeUps_) / (time - lastTime_)};
  lastTime_ = time;
  lastWakeUps_ = woken;
  return sample;
}

}  // namespace tavo::benchmark
