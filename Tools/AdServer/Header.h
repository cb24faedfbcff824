#pragma once

#include <string>
#include <vector>

namespace tavo::adserver {

// One HTTP header line. A name may occur several times, as Set-Cookie does.
struct Header {
  std::string name;
  std::string value;

  bool operator==(const Header&) const = default;
};

using Headers = std::vector<Header>;

}  // namespace tavo::adserver
