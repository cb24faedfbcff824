#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavo {

// Small values that outlive the process, per application. Main thread only.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  [[nodiscard]] virtual std::optional<std::string> value(std::string_view key) const = 0;
  // Nothing removes the key. The change is visible at once.
  virtual void setValue(std::string_view key, std::optional<std::string> value) = 0;
  // Writes what has changed to disk. A file that cannot be written costs the change, not the
  // process.
  virtual void synchronize() = 0;
};

}  // namespace tavo
