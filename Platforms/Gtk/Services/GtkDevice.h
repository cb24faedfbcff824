#pragma once

#include <string>

#include "Services/Device.h"

namespace tavo::gtk {

// The machine as Linux describes it: the model is the maker's product name ("Desktop" where the
// firmware names none), the hardware machine is the processor's architecture, the system version is
// the distribution's (the kernel's where it has none).
class GtkDevice : public Device {
 public:
  // The application's version is known to the host only.
  explicit GtkDevice(std::string applicationVersion)
      : applicationVersion_{std::move(applicationVersion)} {}

  [[nodiscard]] std::string model() const override;
  [[nodiscard]] std::string hardwareMachine() const override;
  [[nodiscard]] std::string systemVersion() const override;
  // Sheets of applications, turned bounds, pages that hear of rotations: all there.
  [[nodiscard]] std::string contractVersion() const override { return "12.0"; }
  [[nodiscard]] std::string applicationVersion() const override { return applicationVersion_; }
  [[nodiscard]] std::vector<std::string> preferredLanguages() const override;
  [[nodiscard]] std::string localeIdentifier() const override;

 private:
  std::string applicationVersion_;
};

// The two ways in which a locale of the environment ("de_CH.UTF-8", "sr_RS@latin", "C") is written:
// "de-CH" for languages, "de_CH" for locales. Empty for "C" and "POSIX", which are nobody's.
[[nodiscard]] std::string languageTag(const std::string& posixLocale);
[[nodiscard]] std::string localeName(const std::string& posixLocale);

}  // namespace tavo::gtk
