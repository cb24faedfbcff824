#include "AdPlayer/Scan/EngineProcesses.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tavo::adplayer {

namespace {

struct Process {
  int parent = 0;
  std::string name{};
  double seconds = 0;
};

// "id (name) state parent ... utime stime", where the name may hold anything but its last bracket.
Process readProcess(const std::filesystem::path& folder) {
  std::ifstream file{folder / "stat"};
  std::string line;
  std::getline(file, line);
  const auto begin = line.find('(');
  const auto end = line.rfind(')');
  if (begin == line.npos || end == line.npos) return {};
  Process process;
  process.name = line.substr(begin + 1, end - begin - 1);
  std::istringstream rest{line.substr(end + 1)};
  std::string skipped;
  double user = 0;
  double system = 0;
  rest >> skipped >> process.parent;
  for (int field = 5; field < 14; ++field) rest >> skipped;
  rest >> user >> system;
  process.seconds = (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
  return process;
}

bool descendsFromHere(int id, const std::map<int, Process>& processes) {
  const int here = getpid();
  for (std::size_t steps = 0; steps < processes.size(); ++steps) {
    const auto found = processes.find(id);
    if (found == processes.end()) return false;
    id = found->second.parent;
    if (id == here) return true;
  }
  return false;
}

}  // namespace

std::map<int, double> engineProcessorSeconds() {
  std::map<int, Process> processes;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator{"/proc", ignored}) {
    const std::string name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != name.npos) continue;
    processes[std::stoi(name)] = readProcess(entry.path());
  }
  std::map<int, double> seconds;
  for (const auto& [id, process] : processes) {
    const bool isEngine = process.name.starts_with("WebKit");
    if (isEngine && descendsFromHere(id, processes)) seconds[id] = process.seconds;
  }
  return seconds;
}

}  // namespace tavo::adplayer
