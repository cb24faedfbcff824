#pragma once

#include <optional>
#include <string>

#include "Values/CalendarEvent.h"

namespace tavo::gtk {

// The event as an iCalendar file (RFC 5545), with `identifier` as its UID and `now` as the time of
// writing; none when it cannot be one: it ends before it starts, or a time is beyond what the
// format holds.
[[nodiscard]] std::optional<std::string> calendarFile(const CalendarEvent& event,
                                                      const std::string& identifier, Date now);

}  // namespace tavo::gtk
