#include "ErrorHandler/XDatabase.h"

#include <tavo/FatalFailure.h>

#include "ErrorHandler/OperationLog.h"
#include "Services/Folders.h"

namespace tavo {

namespace {

constexpr const char* storeFile = "CorvaneTAVOSDKDB.sqlite";
}  // namespace

XDatabase::XDatabase(std::shared_ptr<Environment> environment)
    : environment_{std::move(environment)} {}

void XDatabase::fail(const std::string& what, const SqliteDatabase& database) const {
  environment_->shared<FatalFailure>().raise("TAVO: " + what + ": " + database.lastError());
}

std::shared_ptr<ManagedObjectContext> XDatabase::managedObjectContext() {
  const OperationLog log{"-[XDatabase managedObjectContext]"};
  if (context_) return context_;
  if (const auto coordinator = persistentStoreCoordinator()) {
    context_ = std::make_shared<ManagedObjectContext>(coordinator, managedObjectModel());
  }
  return context_;
}

const ManagedObjectModel& XDatabase::managedObjectModel() {
  const OperationLog log{"-[XDatabase managedObjectModel]"};
  if (!model_) model_ = ManagedObjectModel{"ErrorLogs", {"errorId", "errorDesc", "timeStamp"}};
  return *model_;
}

std::shared_ptr<SqliteDatabase> XDatabase::persistentStoreCoordinator() {
  const OperationLog log{"-[XDatabase persistentStoreCoordinator]"};
  if (coordinator_) return coordinator_;
  const auto folder = applicationDocumentsDirectory();
  if (folder.empty()) {
    environment_->shared<FatalFailure>().raise("TAVO: there is no folder for documents");
    return nullptr;
  }
  const auto path = folder + "/" + storeFile;
  auto database = std::make_shared<SqliteDatabase>(path);
  if (database->isOpen() && database->run(managedObjectModel().creation())) {
    coordinator_ = std::move(database);
  } else {
    fail("the error log " + path + " cannot be opened", *database);
  }
  return coordinator_;
}

std::string XDatabase::applicationDocumentsDirectory() const {
  const OperationLog log{"-[XDatabase applicationDocumentsDirectory]"};
  const auto documents = environment_->platform().folders->documentFolders();
  return documents.empty() ? std::string{} : documents.back();
}

void XDatabase::saveContext() {
  const OperationLog log{"-[XDatabase saveContext]"};
  const auto context = managedObjectContext();
  if (!context || !context->hasChanges() || context->save()) return;
  fail("the error log cannot be saved", *coordinator_);
}

}  // namespace tavo
