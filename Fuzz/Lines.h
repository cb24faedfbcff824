#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace tavo::fuzz {

// What must hold for every input.
inline void require(bool holds) {
  if (!holds) std::abort();
}

// The input as lines; the last one may be empty.
inline std::vector<std::string> linesOf(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> lines(1);
  for (std::size_t at = 0; at < size; ++at) {
    if (data[at] == '\n') {
      lines.emplace_back();
    } else {
      lines.back().push_back(static_cast<char>(data[at]));
    }
  }
  return lines;
}

inline bool hasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

}  // namespace tavo::fuzz
