#pragma once

#include <cstddef>
#include <limits>

namespace tavo {

// What a document may cost. The reader stops where a limit is passed and says so; it has no limits
// of its own.
struct XmlReadLimits {
  std::size_t bytes = std::numeric_limits<std::size_t>::max();
  std::size_t nodes = std::numeric_limits<std::size_t>::max();  // elements and attributes together
  std::size_t depth = std::numeric_limits<std::size_t>::max();  // open elements, the root is 1
};

}  // namespace tavo
