#pragma once

#include <optional>
#include <string_view>

#include <tavo/Date.h>

namespace tavo {

// The moment in a W3C date-time text, as "2026-11-21T10:00:00+01:00" or "2026-11-21T10:00Z" has it.
// None when the text is not one: no single "T", no such pattern, or a year that no clock of this
// machine can count to (before 1678 and after 2261).
[[nodiscard]] std::optional<Date> dateFromW3CCalendarDate(std::string_view text);

}  // namespace tavo
