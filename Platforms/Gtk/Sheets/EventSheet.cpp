#include "Gtk/Sheets/EventSheet.h"

#include <ctime>
#include <utility>

#include "Gtk/Sheets/Sheet.h"
#include "Values/Translation.h"

namespace tavo::gtk {

namespace {

constexpr std::size_t longestField = 500;
constexpr std::size_t longestNotes = 5'000;
constexpr const char* momentPattern = "%Y-%m-%d %H:%M";

std::string alarmText(const CalendarAlarm& alarm) {
  if (const auto* moment = std::get_if<Date>(&alarm)) {
    // Translators: %1 is a date with its time.
    return filledIn(translated("Reminder: %1"), momentText(*moment));
  }
  constexpr double secondsPerMinute = 60;
  const auto minutes = static_cast<long long>(std::get<Seconds>(alarm).count() / secondsPerMinute);
  if (minutes == 0) return translated("Reminder: at the start");
  const auto count = static_cast<unsigned long>(std::llabs(minutes));
  const std::string text = minutes < 0
                               ? translatedPlural("Reminder: %1 minute before the start",
                                                  "Reminder: %1 minutes before the start", count)
                               : translatedPlural("Reminder: %1 minute after the start",
                                                  "Reminder: %1 minutes after the start", count);
  return filledIn(text, std::to_string(count));
}

// The fields of the sheet; they live in its form.
struct EventFields {
  Gtk::Entry& title;
  Gtk::Entry& location;
  Gtk::Entry& start;
  Gtk::Entry& end;
  Gtk::TextView& notes;
};

// The event as the fields have it; a time that cannot be read stays what it was.
CalendarEvent edited(CalendarEvent event, const EventFields& fields) {
  const auto moment = [](const Gtk::Entry& entry, Date before) {
    // Seconds are not shown: a time that was left alone keeps them.
    const std::string text = entry.get_text();
    return text == momentText(before) ? before : momentFromText(text).value_or(before);
  };
  event.title = fields.title.get_text();
  event.location = fields.location.get_text();
  event.start = moment(fields.start, event.start);
  event.end = moment(fields.end, event.end);
  event.notes = fields.notes.get_buffer()->get_text();
  return event;
}

}  // namespace

std::string momentText(Date moment) {
  constexpr std::size_t longest = 32;
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm brokenDown{};
  char text[longest];
  if (localtime_r(&seconds, &brokenDown) == nullptr) return {};
  return {text, std::strftime(text, sizeof text, momentPattern, &brokenDown)};
}

std::optional<Date> momentFromText(const std::string& text) {
  std::tm brokenDown{};
  const char* end = strptime(text.c_str(), momentPattern, &brokenDown);
  constexpr int firstYear = 1678 - 1900;  // what the clock of this machine can count to
  constexpr int lastYear = 2261 - 1900;
  if (end == nullptr || *end != '\0' || brokenDown.tm_year < firstYear ||
      brokenDown.tm_year > lastYear) {
    return std::nullopt;
  }
  brokenDown.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&brokenDown));
}

std::shared_ptr<ViewController> makeEventSheet(
    const CalendarEvent& event,
    std::function<void(EventEditAction, const CalendarEvent&)> finished) {
  using enum EventEditAction;
  using Report = std::function<void(EventEditAction, const CalendarEvent&)>;
  const auto waiting = std::make_shared<Report>(std::move(finished));
  const auto report = [waiting](EventEditAction action, const CalendarEvent& result) {
    if (const auto tell = std::exchange(*waiting, {})) tell(action, result);
  };
  auto* form = Gtk::make_managed<SheetForm>(translated("New Event"));
  const auto entry = [form](const std::string& label, const std::string& text) -> Gtk::Entry& {
    return form->addEntry(label, presentable(text, Lines::one, longestField));
  };
  const EventFields fields{
      .title = entry(translated("Title"), event.title),
      .location = entry(translated("Location"), event.location),
      .start = entry(translated("Starts"), momentText(event.start)),
      .end = entry(translated("Ends"), momentText(event.end)),
      .notes =
          form->addText(translated("Notes"), presentable(event.notes, Lines::many, longestNotes))};
  if (event.alarm) form->addNote(alarmText(*event.alarm));
  const auto cancel = [report, event] { report(cancelled, event); };
  form->addButton(translated("Delete"), SheetForm::Role::destructive,
                  [report, event] { report(deleted, event); });
  form->addButton(translated("Cancel"), SheetForm::Role::cancel, cancel);
  form->addButton(translated("Save"), SheetForm::Role::suggested,
                  [report, event, fields] { report(saved, edited(event, fields)); });
  return std::make_shared<Sheet>(*form, cancel);
}

}  // namespace tavo::gtk
