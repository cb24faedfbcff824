#pragma once

#include <memory>
#include <string>
#include <vector>

struct sqlite3;

namespace tavo {

// One connection to an SQLite file. Used by one thread at a time; several connections to one file
// wait for each other, for some seconds at most.
class SqliteDatabase {
 public:
  // Opens or creates the file. Whether that worked, isOpen tells.
  explicit SqliteDatabase(const std::string& path);
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  [[nodiscard]] bool isOpen() const { return open_; }

  // Runs one statement with a text for each "?"; false when it failed.
  bool run(const std::string& statement, const std::vector<std::string>& texts = {});

  // What went wrong last, in SQLite's words.
  [[nodiscard]] std::string lastError() const;

 private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };

  std::unique_ptr<sqlite3, Closer> handle_;
  bool open_ = false;
};

}  // namespace tavo
