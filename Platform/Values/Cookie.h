#pragma once

#include <optional>
#include <string>

#include <tavo/Date.h>

namespace tavo {

struct Cookie {
  std::string name{};
  std::string value{};
  std::string domain{};  // with a leading dot: the host and all below it; without: the host alone
  std::string path = "/";
  std::optional<Date> expires{};  // none: until the process ends
  bool secure = false;
  bool httpOnly = false;
  friend bool operator==(const Cookie&, const Cookie&) = default;
};

}  // namespace tavo
