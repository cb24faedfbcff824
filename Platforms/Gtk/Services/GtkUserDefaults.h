#pragma once

#include <map>
#include <set>
#include <string>

#include "Services/UserDefaults.h"

namespace tavo::gtk {

// User defaults in a key file of GLib's. Keys and values are written with escapes, so any bytes
// come back as they were. Writing replaces the file as a whole and keeps what another process of
// the application has changed in the meantime.
class GtkUserDefaults : public UserDefaults {
 public:
  // Reads the file at once. A missing or unreadable one counts as empty.
  explicit GtkUserDefaults(std::string path);

  // "<user config dir>/<application>/defaults.ini".
  [[nodiscard]] static std::string defaultPath(const std::string& applicationId);

  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override;
  void setValue(std::string_view key, std::optional<std::string> value) override;
  void synchronize() override;

 private:
  using Values = std::map<std::string, std::string, std::less<>>;

  [[nodiscard]] Values readFile() const;
  [[nodiscard]] bool writeFile(const Values& values) const;
  static void assign(Values& values, const std::string& key,
                     const std::optional<std::string>& value);

  std::string path_;
  Values values_;
  std::map<std::string, std::optional<std::string>, std::less<>> changes_;  // not written yet
};

}  // namespace tavo::gtk
