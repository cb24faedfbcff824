#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tavo {

// The parameters of one command of a creative, their values unescaped.
using MraidParameters = std::map<std::string, std::string, std::less<>>;

// The value under `key`, or the empty text. It lives as long as `parameters`.
[[nodiscard]] std::string_view valueOf(const MraidParameters& parameters, std::string_view key);

[[nodiscard]] constexpr std::string_view trueOrFalse(bool value) {
  return value ? "true" : "false";
}

}  // namespace tavo
