#include "Machine.h"

#include <sys/utsname.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <thread>

namespace tavo::benchmarks {
namespace {

// Of the first line of /proc/cpuinfo that names the processor; on ARM only parts have names.
std::string processorName() {
  std::ifstream file{"/proc/cpuinfo"};
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name") || line.starts_with("CPU part")) {
      const std::size_t colon = line.find(": ");
      if (colon != std::string::npos) return line.substr(colon + 2);
    }
  }
  return {};
}

std::string kernelName() {
  utsname names{};
  return uname(&names) == 0 ? std::string{names.sysname} + " " + names.release + " " + names.machine
                            : std::string{};
}

// What pkg-config knows is what the benchmark was built with.
std::string engineVersions() {
  std::string versions;
  for (const std::string name :
       {"glib-2.0", "gtk4", "webkitgtk-6.0", "libsoup-3.0", "gstreamer-1.0", "pugixml"}) {
    FILE* const pipe = popen(("pkg-config --modversion " + name + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) continue;
    std::array<char, 64> line{};
    if (std::fgets(line.data(), line.size(), pipe) != nullptr) {
      std::string version{line.data()};
      version.erase(version.find_last_not_of('\n') + 1);
      versions += (versions.empty() ? "" : ", ") + name + " " + version;
    }
    pclose(pipe);
  }
  return versions;
}

std::string timeNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text.data();
}

double loadOfMachine() {
  std::ifstream file{"/proc/loadavg"};
  double load = 0;
  file >> load;
  return load;
}

}  // namespace

Machine thisMachine() {
  return {.processor = processorName(),
          .cores = std::thread::hardware_concurrency(),
          .kernel = kernelName(),
          .compiler = __VERSION__,
          .engines = engineVersions(),
          .date = timeNow(),
          .load = loadOfMachine()};
}

}  // namespace tavo::benchmarks
