#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ErrorHandler/ManagedObjects.h"
#include "Runtime/Environment.h"

namespace tavo {

// The error-log store: the file "CorvaneTAVOSDKDB.sqlite" in the application's documents folder.
// Its parts are made on first use and kept. One thread at a time; two stores on one file get along.
class XDatabase {
 public:
  explicit XDatabase(std::shared_ptr<Environment> environment);

  // Null when there is no store to be had.
  [[nodiscard]] std::shared_ptr<ManagedObjectContext> managedObjectContext();
  [[nodiscard]] const ManagedObjectModel& managedObjectModel();
  // The open file, with its table. A file that cannot be opened is a FatalFailure; null only when
  // that returns.
  [[nodiscard]] std::shared_ptr<SqliteDatabase> persistentStoreCoordinator();

  // The last of the platform's folders for documents; empty where it has none.
  [[nodiscard]] std::string applicationDocumentsDirectory() const;

  // Stores what the context holds. A failure is a FatalFailure: the store is taken to be sound, not
  // to be repaired.
  void saveContext();

 private:
  void fail(const std::string& what, const SqliteDatabase& database) const;

  const std::shared_ptr<Environment> environment_;
  std::shared_ptr<ManagedObjectContext> context_;
  std::optional<ManagedObjectModel> model_;
  std::shared_ptr<SqliteDatabase> coordinator_;
};

}  // namespace tavo
