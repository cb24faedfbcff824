#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

namespace tavo::test {

// The threads of players that still live, and those that these have started.
inline std::ptrdiff_t playerThreads() {
  return std::ranges::count_if(std::filesystem::directory_iterator{"/proc/self/task"},
                               [](const auto& thread) {
                                 std::string name;
                                 std::getline(std::ifstream{thread.path() / "comm"}, name);
                                 return name == "GstPlay";
                               });
}

}  // namespace tavo::test
