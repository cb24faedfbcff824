#pragma once

#include <optional>
#include <string>
#include <variant>

#include <tavo/Date.h>

namespace tavo {

// When a reminder of an event is due: at a moment of its own, or so long after the start (before
// it, when negative).
using CalendarAlarm = std::variant<Date, Seconds>;

// One event of a calendar that does not repeat. Texts are valid UTF-8; whatever else may stand in
// them comes from an ad.
struct CalendarEvent {
  std::string title;
  std::string notes;
  std::string location;
  Date start;
  Date end;
  std::optional<CalendarAlarm> alarm{};
  friend bool operator==(const CalendarEvent&, const CalendarEvent&) = default;
};

}  // namespace tavo
