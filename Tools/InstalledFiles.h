#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace tavo {

// `place` seen from the folder of the program that runs; an absolute one stays.
inline std::string besideProgram(const std::filesystem::path& place) {
  std::error_code failure;
  const auto program = std::filesystem::canonical("/proc/self/exe", failure);
  return (program.parent_path() / place).lexically_normal().string();
}

}  // namespace tavo
