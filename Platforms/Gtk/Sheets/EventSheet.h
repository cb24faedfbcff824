#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Services/Composers.h"

namespace tavo::gtk {

// A sheet in which the user looks over an event and changes its texts and times.
[[nodiscard]] std::shared_ptr<ViewController> makeEventSheet(
    const CalendarEvent& event,
    std::function<void(EventEditAction, const CalendarEvent&)> finished);

// A moment on the clock of this machine as "2026-11-21 10:00", and back; none for another text.
[[nodiscard]] std::string momentText(Date moment);
[[nodiscard]] std::optional<Date> momentFromText(const std::string& text);

}  // namespace tavo::gtk
