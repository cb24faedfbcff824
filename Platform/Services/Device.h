#pragma once

#include <string>
#include <vector>

namespace tavo {

// Facts about the machine and its user's choices. Answers are quick; main thread only.
class Device {
 public:
  virtual ~Device() = default;

  [[nodiscard]] virtual std::string model() const = 0;            // for example "iPhone", "Desktop"
  [[nodiscard]] virtual std::string hardwareMachine() const = 0;  // the system value "hw.machine"
  [[nodiscard]] virtual std::string systemVersion() const = 0;    // for example "12.5"
  // What rules about old systems compare, "8.0" or higher: the version of what this platform
  // offers, which the number of its distribution says nothing about.
  [[nodiscard]] virtual std::string contractVersion() const = 0;
  [[nodiscard]] virtual std::string applicationVersion() const = 0;
  // Best first, for example "en", "de-CH"; never empty.
  [[nodiscard]] virtual std::vector<std::string> preferredLanguages() const = 0;
  [[nodiscard]] virtual std::string localeIdentifier() const = 0;  // for example "en_US"
};

}  // namespace tavo
