#include "Gtk/Sheets/GtkCalendarAccess.h"

#include <giomm.h>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Services/NewFile.h"

namespace tavo::gtk {

namespace {

Error failure(std::string description) {
  return {std::string{calendarErrorDomain}, 1, std::move(description)};
}

Glib::RefPtr<Gio::AppInfo> calendarApplication() {
  return Gio::AppInfo::get_default_for_type("text/calendar", false);
}

// Hands the file to the user's calendar; false when it does not start.
bool openFile(const Glib::RefPtr<Gio::AppInfo>& application, const std::string& path) {
  const GText uri{g_filename_to_uri(path.c_str(), nullptr, nullptr)};
  try {
    return uri != nullptr && application->launch_uri(uri.get());
  } catch (const Glib::Error&) {
    return false;
  }
}

}  // namespace

std::string GtkCalendarAccess::defaultFolder(const std::string& applicationId) {
  const GText path{
      g_build_filename(g_get_user_cache_dir(), applicationId.c_str(), "events", nullptr)};
  return textOf(path.get());
}

std::optional<CalendarAuthorization> GtkCalendarAccess::authorization() const {
  if (calendarApplication()) return std::nullopt;
  return CalendarAuthorization::restricted;
}

void GtkCalendarAccess::requestAccess(std::function<void(bool)> answered) {
  runLoop_->post([answered = std::move(answered)] { answered(true); });
}

void GtkCalendarAccess::save(const CalendarEvent& event,
                             std::function<void(const std::optional<Error>&)> done) {
  runLoop_->post([error = saveNow(event), done = std::move(done)] { done(error); });
}

std::optional<Error> GtkCalendarAccess::saveNow(const CalendarEvent& event) {
  const auto application = calendarApplication();
  if (!application) return failure("There is no calendar application.");
  const GText identifier{g_uuid_string_random()};
  std::string reason;
  if (!module_.isAvailable(reason)) return failure("Events cannot be written: " + reason);
  const auto text = module_.file(event, textOf(identifier.get()), runLoop_->today());
  if (!text) return failure("The event ends before it starts.");
  const auto path =
      writeNewFile(folder_, "event-" + textOf(identifier.get()), ".ics", *text, reason);
  if (!path) return failure("The event could not be written: " + reason);
  if (openFile(application, *path)) return std::nullopt;
  unlink(path->c_str());
  return failure("The calendar application could not be started.");
}

}  // namespace tavo::gtk
