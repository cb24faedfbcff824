#include "Gtk/Calendar/CalendarModule.h"

#include "Gtk/Calendar/CalendarFile.h"

extern "C" __attribute__((visibility("default"))) void tavo_write_calendar_file(
    const tavo::CalendarEvent& event, const std::string& identifier, tavo::Date now,
    std::optional<std::string>& written) {
  written = tavo::gtk::calendarFile(event, identifier, now);
}
