#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tavo {

// The parameters of one command of a creative, their values unescaped.
using MraidParameters = std::map<std::string, std::string, std::less<>>;

// The value under `key`, or the empty text. It lives as long as `parameters`.
[[nodiscard]] std::string_view valueOf(const MraidParameters& parameters, std::string_view key);

// The whole number that `text` starts with, blanks and a sign before it allowed; 0 when there is
// none. Numbers out of range end at the nearest one that fits: what a creative sends must never
// wrap around into a harmless-looking size.
[[nodiscard]] std::int64_t leadingInteger(std::string_view text);

// The number that `text` starts with, read the same way in every locale; 0 when there is none or
// when no floating-point number comes near it.
[[nodiscard]] float leadingFloat(std::string_view text);

// `number` without its fraction; out of range ends at the nearest integer, not-a-number gives 0.
[[nodiscard]] std::int64_t truncated(double number);

[[nodiscard]] constexpr std::string_view trueOrFalse(bool value) {
  return value ? "true" : "false";
}

}  // namespace tavo
