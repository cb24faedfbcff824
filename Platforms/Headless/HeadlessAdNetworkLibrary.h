#pragma once

#include <map>
#include <string>

#include "Services/AdNetworkLibrary.h"

namespace tavo::headless {

// A library that exports what a test puts into it: nothing at first.
class HeadlessAdNetworkLibrary : public AdNetworkLibrary {
 public:
  [[nodiscard]] void* find(const std::string& name) override {
    ++lookUps;
    const auto found = exports.find(name);
    return found == exports.end() ? nullptr : found->second;
  }

  std::map<std::string, void*> exports;
  int lookUps = 0;
};

}  // namespace tavo::headless
