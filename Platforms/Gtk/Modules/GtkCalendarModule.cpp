#include "Gtk/Modules/GtkCalendarModule.h"

namespace tavo::gtk {

bool GtkCalendarModule::isAvailable(std::string& failure) {
  if (!triedToLoad_) load();
  failure = failure_;
  return write_ != nullptr;
}

std::optional<std::string> GtkCalendarModule::file(const CalendarEvent& event,
                                                   const std::string& identifier, Date now) {
  if (!triedToLoad_) load();
  std::optional<std::string> written;
  if (write_ != nullptr) write_(event, identifier, now, written);
  return written;
}

void GtkCalendarModule::load() {
  triedToLoad_ = true;
  void* const entry = moduleEntry(folder_ / "TavoGtkCalendar.so", writeCalendarFileName, failure_);
  write_ = reinterpret_cast<WriteCalendarFile>(entry);
}

}  // namespace tavo::gtk
