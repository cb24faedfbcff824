#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tavo {

// The macros of VAST addresses: "[NAME]", or "%5BNAME%5D" where somebody has escaped it. A value is
// percent-encoded; what it holds is never taken for a macro again. A macro without a value stays.
class VastMacros {
 public:
  // Asked anew for each address.
  using Value = std::function<std::string()>;

  // An empty text leaves the macro as it stands.
  void set(std::string name, std::string value);
  void set(std::string name, Value value);

  // The address with its macros filled in; empty when it would be longer than `most` bytes.
  [[nodiscard]] std::string filled(std::string_view address, std::size_t most) const;

 private:
  [[nodiscard]] std::string valueOf(std::string_view name) const;

  std::map<std::string, Value, std::less<>> values_;
};

// `text` as the value of a query: everything but letters, digits and "-._~" as "%XX".
[[nodiscard]] std::string percentEncodedValue(std::string_view text);

// A moment by ISO 8601 with milliseconds, in UTC: "2026-11-22T08:15:07.127Z".
[[nodiscard]] std::string isoTime(std::int64_t millisecondsSince1970);

// A place in a film as VAST writes it: "00:01:05.500"; "-1" for none.
[[nodiscard]] std::string playheadText(double seconds);

}  // namespace tavo
