#pragma once

#include <string_view>

namespace tavo {

// Whether two names are equal, byte for byte. Names that differ mostly differ in length or in their
// first character, which is looked at before anything is called.
[[nodiscard]] inline bool isSameName(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         (left.empty() || (left.front() == right.front() && left == right));
}

}  // namespace tavo
