#pragma once

#include <optional>
#include <string>

#include <tavo/ClickToAction.h>
#include <tavo/Date.h>

#include "Values/CalendarEvent.h"

namespace tavo {

// A creative's description of an event, as the parameters of a click-to-action. The start is `now`
// and the end an hour after the start where the creative does not say. None when the text holds no
// member that can be read. A reminder that is not text is left away.
[[nodiscard]] std::optional<ClickToActionParameters> calendarParameters(
    const std::string& description, Date now);

// The event that such parameters describe, with the same rules for absent dates.
[[nodiscard]] CalendarEvent calendarEvent(const ClickToActionParameters& parameters, Date now);

// When a reminder's text is due: at the date that it is, or so many milliseconds after the start.
[[nodiscard]] CalendarAlarm calendarAlarm(const std::string& reminder);

}  // namespace tavo
