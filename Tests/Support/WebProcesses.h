#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

namespace tavo::test {

// The processes that descend from this one and whose name begins so, by their id here.
inline std::set<int> descendants(const std::string& name = {}) {
  std::map<int, int> parents;
  std::set<int> found;
  for (const auto& entry : std::filesystem::directory_iterator{"/proc"}) {
    std::ifstream file{entry.path() / "stat"};
    int id = 0;
    int parent = 0;
    std::string itsName;
    std::string state;
    if (!(file >> id >> itsName >> state >> parent)) continue;
    parents[id] = parent;
    if (itsName.starts_with("(" + name)) found.insert(id);
  }
  std::erase_if(found, [&](int id) {
    do id = parents[id];
    while (id > 1 && id != getpid());
    return id != getpid();
  });
  return found;
}

inline std::set<int> webProcesses() { return descendants("WebKitWebProces"); }

}  // namespace tavo::test
