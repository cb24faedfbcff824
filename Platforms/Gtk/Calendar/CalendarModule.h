#pragma once

#include <optional>
#include <string>

#include "Values/CalendarEvent.h"

namespace tavo::gtk {

// The one function that the calendar module exports: calendarFile, with its answer in `written`,
// because a function with a C name returns no class of C++. May be called on any thread.
using WriteCalendarFile = void (*)(const CalendarEvent& event, const std::string& identifier,
                                   Date now, std::optional<std::string>& written);
inline constexpr const char* writeCalendarFileName = "tavo_write_calendar_file";

}  // namespace tavo::gtk
