#include "Tracker/VastMacros.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::size_t longestName = 40;
constexpr double longestTime = 359'999.999;  // a hundred hours are no film

struct Brackets {
  std::string_view open;
  std::string_view close;
};
constexpr std::array<Brackets, 2> brackets{{{"[", "]"}, {"%5B", "%5D"}}};

bool isNamePart(char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; }

// The name between brackets that `text` begins with, and how long all of it is; else empty.
struct Macro {
  std::string_view name;
  std::size_t length = 0;
};
Macro macroAt(std::string_view text) {
  for (const auto& [open, close] : brackets) {
    if (!equalsIgnoringCase(text.substr(0, open.size()), open)) continue;
    std::size_t end = open.size();
    while (end < text.size() && end < open.size() + longestName && isNamePart(text[end])) ++end;
    if (end == open.size() || !equalsIgnoringCase(text.substr(end, close.size()), close)) continue;
    return {text.substr(open.size(), end - open.size()), end + close.size()};
  }
  return {};
}

}  // namespace

void VastMacros::set(std::string name, std::string value) {
  values_[std::move(name)] = [value = std::move(value)] { return value; };
}

void VastMacros::set(std::string name, Value value) { values_[std::move(name)] = std::move(value); }

std::string VastMacros::valueOf(std::string_view name) const {
  const auto found = values_.find(name);
  return found != values_.end() ? found->second() : std::string{};
}

std::string VastMacros::filled(std::string_view address, std::size_t most) const {
  std::string text;
  while (!address.empty() && text.size() <= most) {
    const auto plain = std::min(address.find_first_of("[%"), address.size());
    text.append(address.substr(0, plain));
    address.remove_prefix(plain);
    if (address.empty()) break;
    const Macro macro = macroAt(address);
    const std::string value = macro.length > 0 ? valueOf(macro.name) : std::string{};
    const std::size_t taken = std::max<std::size_t>(macro.length, 1);
    text.append(value.empty() ? std::string{address.substr(0, taken)} : percentEncodedValue(value));
    address.remove_prefix(taken);
  }
  return text.size() <= most ? text : std::string{};
}

std::string percentEncodedValue(std::string_view text) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(text.size());
  for (const char c : text) {
    const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (letter || (c >= '0' && c <= '9') || contains("-._~", {&c, 1})) {
      encoded.push_back(c);
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded.append({'%', digits[byte >> 4U], digits[byte & 15U]});
  }
  return encoded;
}

std::string isoTime(std::int64_t millisecondsSince1970) {
  namespace c = std::chrono;
  const c::sys_time<c::milliseconds> time{c::milliseconds{millisecondsSince1970}};
  const auto day = c::floor<c::days>(time);
  const c::year_month_day date{day};
  const c::hh_mm_ss clock{time - day};
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()),
                static_cast<int>(clock.subseconds().count()));
  return text.data();
}

std::string playheadText(double seconds) {
  if (!(seconds >= 0)) return "-1";
  const auto all = static_cast<int>(std::lround(std::min(seconds, longestTime) * 1000));
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", all / 3'600'000, all / 60'000 % 60,
                all / 1000 % 60, all % 1000);
  return text.data();
}

}  // namespace tavo
