#include "ErrorHandler/SqliteDatabase.h"

#include <sqlite3.h>

namespace tavo {

namespace {

constexpr int patienceMilliseconds = 5'000;

struct Finalizer {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

Statement prepare(sqlite3* database, const std::string& text) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &statement, nullptr);
  return Statement{statement};
}

bool bind(sqlite3_stmt* statement, const std::vector<std::string>& texts) {
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto status = sqlite3_bind_text64(statement, static_cast<int>(i) + 1, texts[i].data(),
                                            texts[i].size(), SQLITE_STATIC, SQLITE_UTF8);
    if (status != SQLITE_OK) return false;
  }
  return true;
}

}  // namespace

void SqliteDatabase::Closer::operator()(sqlite3* handle) const { sqlite3_close(handle); }

SqliteDatabase::SqliteDatabase(const std::string& path) {
  sqlite3* handle = nullptr;
  constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  open_ = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr) == SQLITE_OK;
  handle_.reset(handle);  // there also after a failure, with the reason
  if (open_) sqlite3_busy_timeout(handle, patienceMilliseconds);
}

SqliteDatabase::~SqliteDatabase() = default;

bool SqliteDatabase::run(const std::string& text, const std::vector<std::string>& texts) {
  const auto statement = prepare(handle_.get(), text);
  if (!statement || !bind(statement.get(), texts)) return false;
  int status = SQLITE_ROW;
  while (status == SQLITE_ROW) status = sqlite3_step(statement.get());
  return status == SQLITE_DONE;
}

std::string SqliteDatabase::lastError() const {
  return handle_ ? sqlite3_errmsg(handle_.get()) : "out of memory";
}

}  // namespace tavo
