#include "Gtk/Calendar/CalendarFile.h"

#include <libical/ical.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

namespace {

using Component = GOwned<icalcomponent, &icalcomponent_free>;

icaltimetype utcTime(Date moment) {
  return icaltime_from_timet_with_zone(std::chrono::system_clock::to_time_t(moment), 0,
                                       icaltimezone_get_utc_timezone());
}

icalcomponent* reminder(const CalendarAlarm& alarm, const std::string& title) {
  icaltriggertype trigger = icaltriggertype_from_int(0);
  if (const auto* moment = std::get_if<Date>(&alarm)) {
    trigger.time = utcTime(*moment);
  } else {
    constexpr double most = std::numeric_limits<int>::max();  // 68 years
    const double seconds = std::clamp(std::get<Seconds>(alarm).count(), -most, most);
    trigger.duration = icaldurationtype_from_int(static_cast<int>(std::lround(seconds)));
  }
  return icalcomponent_vanew(ICAL_VALARM_COMPONENT, icalproperty_new_action(ICAL_ACTION_DISPLAY),
                             icalproperty_new_description(title.c_str()),
                             icalproperty_new_trigger(trigger), static_cast<void*>(nullptr));
}

}  // namespace

std::optional<std::string> calendarFile(const CalendarEvent& event, const std::string& identifier,
                                        Date now) {
  if (event.end < event.start) return std::nullopt;
  const Component calendar{icalcomponent_vanew(
      ICAL_VCALENDAR_COMPONENT, icalproperty_new_version("2.0"),
      icalproperty_new_prodid("-//Corvane//TAVO SDK 2.2.2//EN"),
      icalproperty_new_method(ICAL_METHOD_PUBLISH), static_cast<void*>(nullptr))};
  icalcomponent* entry = icalcomponent_vanew(
      ICAL_VEVENT_COMPONENT, icalproperty_new_uid(identifier.c_str()),
      icalproperty_new_dtstamp(utcTime(now)), icalproperty_new_dtstart(utcTime(event.start)),
      icalproperty_new_dtend(utcTime(event.end)), icalproperty_new_summary(event.title.c_str()),
      icalproperty_new_location(event.location.c_str()),
      icalproperty_new_description(event.notes.c_str()), static_cast<void*>(nullptr));
  icalcomponent_add_component(calendar.get(), entry);
  if (event.alarm) icalcomponent_add_component(entry, reminder(*event.alarm, event.title));
  const GOwned<char, &icalmemory_free_buffer> text{icalcomponent_as_ical_string_r(calendar.get())};
  return text ? std::optional<std::string>{text.get()} : std::nullopt;
}

}  // namespace tavo::gtk
