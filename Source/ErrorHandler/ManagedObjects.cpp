#include "ErrorHandler/ManagedObjects.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

#include "Values/Text.h"

namespace tavo {

namespace {

// "2014-05-01 12:00:00.000" in UTC, which the store's own date functions read.
std::string timeText(Date date) {
  const auto whole = std::chrono::floor<std::chrono::seconds>(date);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(date - whole).count();
  const std::time_t seconds = Date::clock::to_time_t(whole);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03d", static_cast<int>(milliseconds));
  return std::string{text.data(), length} + fraction.data();
}

}  // namespace

std::string ManagedObjectModel::creation() const {
  std::string columns;
  for (const auto& attribute : attributes) {
    columns += (columns.empty() ? "" : ", ") + attribute + " TEXT";
  }
  return "CREATE TABLE IF NOT EXISTS " + entity + " (" + columns + ")";
}

std::string ManagedObjectModel::insertion() const {
  std::string columns;
  std::string places;
  for (const auto& attribute : attributes) {
    columns += (columns.empty() ? "" : ", ") + attribute;
    places += places.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + entity + " (" + columns + ") VALUES (" + places + ")";
}

ManagedObjectContext::ManagedObjectContext(std::shared_ptr<SqliteDatabase> coordinator,
                                           ManagedObjectModel model)
    : coordinator_{std::move(coordinator)}, model_{std::move(model)} {}

bool ManagedObjectContext::save() {
  if (!coordinator_->run("BEGIN IMMEDIATE")) return false;
  if (insertAll() && coordinator_->run("COMMIT")) {
    inserted_.clear();
    return true;
  }
  coordinator_->run("ROLLBACK");
  return false;
}

bool ManagedObjectContext::insertAll() {
  return std::all_of(inserted_.begin(), inserted_.end(), [&](const ErrorLogs& entry) {
    return coordinator_->run(
        model_.insertion(),
        {validUtf8(entry.errorId), validUtf8(entry.errorDesc), timeText(entry.timeStamp)});
  });
}

}  // namespace tavo
