#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Gtk/Calendar/CalendarModule.h"
#include "Gtk/Modules/ModuleFile.h"
#include "Gtk/Services/OwnFolders.h"

namespace tavo::gtk {

// Writes calendar files by way of the calendar module, which is loaded when the first one is asked
// for; whether it could be is decided once.
class GtkCalendarModule {
 public:
  explicit GtkCalendarModule(std::filesystem::path folder = moduleFolder())
      : folder_{std::move(folder)} {}

  // False when the module cannot be loaded, with the reason in `failure`.
  [[nodiscard]] bool isAvailable(std::string& failure);

  // See calendarFile; none, too, when the module is not available.
  [[nodiscard]] std::optional<std::string> file(const CalendarEvent& event,
                                                const std::string& identifier, Date now);

 private:
  void load();

  std::filesystem::path folder_;
  bool triedToLoad_ = false;
  std::string failure_;
  WriteCalendarFile write_ = nullptr;
};

}  // namespace tavo::gtk
