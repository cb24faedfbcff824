#include "ClickToAction/CalendarClick.h"

#include <algorithm>

#include "Extensions/CalendarDate.h"
#include "Extensions/ScriptObject.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::chrono::hours defaultLength{1};

std::string textOf(const ScriptObject& event, std::string_view key) {
  const auto* text = event.text(key);
  return text == nullptr ? std::string{} : validUtf8(*text);
}

std::optional<Date> dateOf(const ScriptObject& event, std::string_view key) {
  const auto* text = event.text(key);
  return text == nullptr ? std::nullopt : dateFromW3CCalendarDate(*text);
}

template <typename Value>
const Value* valueOf(const ClickToActionParameters& parameters, std::string_view key) {
  const auto found = parameters.find(key);
  return found == parameters.end() ? nullptr : std::get_if<Value>(&found->second);
}

std::string textOf(const ClickToActionParameters& parameters, std::string_view key) {
  const auto* text = valueOf<std::string>(parameters, key);
  return text == nullptr ? std::string{} : *text;
}

}  // namespace

std::optional<ClickToActionParameters> calendarParameters(const std::string& description,
                                                          Date now) {
  const auto event = dictionaryWithJavaScriptObject(description);
  if (!event || event->members.empty()) return std::nullopt;
  const Date start = dateOf(*event, "start").value_or(now);
  const Date end = dateOf(*event, "end").value_or(start + defaultLength);
  ClickToActionParameters parameters;
  const auto put = [&](std::string_view key, auto value) {
    parameters.insert_or_assign(std::string{key}, std::move(value));
  };
  put(parameterKeys::startDate, start);
  put(parameterKeys::endDate, end);
  put(parameterKeys::description, textOf(*event, "description"));
  put(parameterKeys::summary, textOf(*event, "summary"));
  put(parameterKeys::location, textOf(*event, "location"));
  if (const auto* reminder = event->text("reminder")) put(parameterKeys::reminder, *reminder);
  return parameters;
}

CalendarEvent calendarEvent(const ClickToActionParameters& parameters, Date now) {
  const auto* start = valueOf<Date>(parameters, parameterKeys::startDate);
  const auto* end = valueOf<Date>(parameters, parameterKeys::endDate);
  const auto* reminder = valueOf<std::string>(parameters, parameterKeys::reminder);
  CalendarEvent event;
  // Quirk: the description is the title and the summary the notes.
  event.title = textOf(parameters, parameterKeys::description);
  event.notes = textOf(parameters, parameterKeys::summary);
  event.location = textOf(parameters, parameterKeys::location);
  event.start = start == nullptr ? now : *start;
  event.end = end == nullptr ? event.start + defaultLength : *end;
  if (reminder != nullptr) event.alarm = calendarAlarm(*reminder);
  return event;
}

CalendarAlarm calendarAlarm(const std::string& reminder) {
  constexpr double millisecondsPerSecond = 1'000;
  constexpr double longest = 100.0 * 366 * 24 * 60 * 60;  // what a calendar can hold, and no more
  if (const auto date = dateFromW3CCalendarDate(reminder)) return *date;
  return Seconds{std::clamp(leadingNumber(reminder) / millisecondsPerSecond, -longest, longest)};
}

}  // namespace tavo
