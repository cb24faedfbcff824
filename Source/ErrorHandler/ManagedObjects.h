#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/Date.h>

#include "ErrorHandler/SqliteDatabase.h"

namespace tavo {

// One entry of the error log.
struct ErrorLogs {
  std::string errorId;
  std::string errorDesc;
  Date timeStamp{};  // of insertion
};

// The shape of what is stored: one table, its columns in order.
struct ManagedObjectModel {
  std::string entity;
  std::vector<std::string> attributes;

  [[nodiscard]] std::string creation() const;   // the statement that makes the table
  [[nodiscard]] std::string insertion() const;  // the statement that adds a row
};

// Entries that are to be stored together.
class ManagedObjectContext {
 public:
  explicit ManagedObjectContext(std::shared_ptr<SqliteDatabase> coordinator,
                                ManagedObjectModel model);

  void insert(ErrorLogs entry) { inserted_.push_back(std::move(entry)); }
  [[nodiscard]] bool hasChanges() const { return !inserted_.empty(); }

  // Stores all of them or none; false when that failed, and they stay.
  bool save();

 private:
  bool insertAll();

  std::shared_ptr<SqliteDatabase> coordinator_;
  ManagedObjectModel model_;
  std::vector<ErrorLogs> inserted_;
};

}  // namespace tavo
