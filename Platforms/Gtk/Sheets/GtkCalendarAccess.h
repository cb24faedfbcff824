#pragma once

#include <memory>
#include <string>

#include "Gtk/Modules/GtkCalendarModule.h"
#include "Services/CalendarAccess.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

inline constexpr std::string_view calendarErrorDomain = "com.CorvaneTAVO.calendar";

// The calendar of a desktop, reached as every application reaches it: an event goes as a file to
// the application that the user has for calendars; without one the calendar is restricted. Desktops
// know no permission for that; the editor in which the user saves the event is the question.
class GtkCalendarAccess : public CalendarAccess {
 public:
  // Event files are written into `folder`, by the module in `modules`.
  GtkCalendarAccess(std::shared_ptr<RunLoop> runLoop, std::string folder,
                    std::filesystem::path modules = moduleFolder())
      : runLoop_{std::move(runLoop)}, folder_{std::move(folder)}, module_{std::move(modules)} {}

  // The user's cache folder for the application: an event file is only a messenger.
  [[nodiscard]] static std::string defaultFolder(const std::string& applicationId);

  [[nodiscard]] std::optional<CalendarAuthorization> authorization() const override;
  [[nodiscard]] bool canRequestAccess() const override { return true; }
  void requestAccess(std::function<void(bool)> answered) override;
  void save(const CalendarEvent& event,
            std::function<void(const std::optional<Error>&)> done) override;

 private:
  [[nodiscard]] std::optional<Error> saveNow(const CalendarEvent& event);

  std::shared_ptr<RunLoop> runLoop_;
  std::string folder_;
  GtkCalendarModule module_;
};

}  // namespace tavo::gtk
