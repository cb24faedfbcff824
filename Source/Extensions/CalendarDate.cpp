#include "Extensions/CalendarDate.h"

#include <algorithm>
#include <ctime>
#include <string>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::size_t longestDate = 64;
constexpr int firstYear = 1678;
constexpr int lastYear = 2261;

// Seconds for a time that has none, and a zone that the pattern can read.
std::string completedTime(std::string time) {
  if (time.ends_with('Z')) {
    // Quirk: a time in "Z" gets no seconds, so without its own it is no time.
    time.replace(time.size() - 1, 1, "+0000");
    return time;
  }
  const auto marker = time.find_first_of("+-");
  // Quirk: nor does a time without a zone.
  if (marker == std::string::npos) return time + "+0000";
  time.erase(std::remove(time.begin() + static_cast<std::ptrdiff_t>(marker), time.end(), ':'),
             time.end());
  if (std::count(time.begin(), time.end(), ':') < 2) time.insert(marker, ":00");
  return time;
}

}  // namespace

std::optional<Date> dateFromW3CCalendarDate(std::string_view text) {
  const auto split = text.find('T');
  if (text.size() > longestDate || occurrences(text, "T") != 1) return std::nullopt;
  const std::string joined =
      std::string{text.substr(0, split)} + "T" + completedTime(std::string{text.substr(split + 1)});
  std::tm brokenDown{};
  if (strptime(joined.c_str(), "%FT%T%z", &brokenDown) == nullptr) return std::nullopt;
  const int year = brokenDown.tm_year + 1900;
  if (year < firstYear || year > lastYear) return std::nullopt;
  // Quirk: the zone is read and not used; the numbers count as this machine's own time, because
  // creatives name events by the clock on the user's wall.
  brokenDown.tm_isdst = -1;
  return std::chrono::system_clock::from_time_t(std::mktime(&brokenDown));
}

}  // namespace tavo
