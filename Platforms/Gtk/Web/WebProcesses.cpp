#include "Gtk/Web/WebProcesses.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace tavo::gtk {
namespace {

// The system cuts names after fifteen letters.
constexpr const char* webProcessName = "WebKitWebProces";

std::string processFolder(int id) { return "/proc/" + std::to_string(id); }

// A process may end while it is looked at.
std::vector<int> childrenOf(int id) {
  std::vector<int> children;
  std::error_code failure;
  std::filesystem::directory_iterator thread{processFolder(id) + "/task", failure};
  for (; !failure && thread != std::filesystem::directory_iterator{}; thread.increment(failure)) {
    std::ifstream file{thread->path() / "children"};
    for (int child = 0; file >> child;) children.push_back(child);
  }
  return children;
}

double ownMegabytes(int id) {
  std::ifstream file{processFolder(id) + "/status"};
  double kilobytes = 0;
  for (std::string word; file >> word;) {
    double number = 0;
    if ((word == "RssAnon:" || word == "RssShmem:") && file >> number) kilobytes += number;
  }
  return kilobytes / 1024;
}

Seconds processorTime(int id) {
  constexpr int skipped = 11;  // fields between the name and the times
  std::ifstream file{processFolder(id) + "/stat"};
  std::string word;
  while (file >> word && !word.ends_with(')')) continue;
  for (int field = 0; field < skipped; ++field) file >> word;
  double user = 0;
  double system = 0;
  file >> user >> system;
  return Seconds{(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK))};
}

void collect(int id, std::vector<WebProcess>& found) {
  std::string name;
  std::getline(std::ifstream{processFolder(id) + "/comm"}, name);
  if (name == webProcessName) found.push_back({id, ownMegabytes(id), processorTime(id)});
  for (const int child : childrenOf(id)) collect(child, found);
}

}  // namespace

std::vector<WebProcess> webProcessesOfThisProgram() {
  std::vector<WebProcess> found;
  for (const int child : childrenOf(getpid())) collect(child, found);
  return found;
}

}  // namespace tavo::gtk
