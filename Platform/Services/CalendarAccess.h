#pragma once

#include <functional>
#include <optional>

#include <tavo/Error.h>

#include "Values/CalendarEvent.h"

namespace tavo {

enum class CalendarAuthorization { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

// The user's calendar and whether it may be written to. Main thread only.
class CalendarAccess {
 public:
  virtual ~CalendarAccess() = default;

  // What has been decided so far, answered at once and without asking the user; none where the
  // platform knows no such question; restricted where there is no calendar to write to.
  [[nodiscard]] virtual std::optional<CalendarAuthorization> authorization() const = 0;

  // Whether access can be asked for at all; without it nothing is ever saved.
  [[nodiscard]] virtual bool canRequestAccess() const = 0;

  // Asks for access, of the user where the platform does so. `answered` is called once, never
  // inside this call, and on any thread.
  virtual void requestAccess(std::function<void(bool granted)> answered) = 0;

  // Puts an event into the calendar. `done` is called once on the main thread, never inside this
  // call, with what went wrong, if anything.
  virtual void save(const CalendarEvent& event,
                    std::function<void(const std::optional<Error>&)> done) = 0;
};

}  // namespace tavo
