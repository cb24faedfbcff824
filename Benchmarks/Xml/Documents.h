#pragma once

#include <string>
#include <vector>

namespace tavo::benchmarks {

struct Document {
  std::string name;
  std::string text;
};

// VAST documents of about 3 KB, 15 KB and 300 KB. The first two are recorded ones, the last is made
// of many ads whose names of hosts and files differ in length.
[[nodiscard]] const std::vector<Document>& documents();

}  // namespace tavo::benchmarks
