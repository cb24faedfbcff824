#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include <tavo/FatalFailure.h>
#include <tavo/XErrorHandler.h>
#include <tavo/XGlobalConfiguration.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "ErrorHandler/XDatabase.h"
#include "Services/Folders.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

class ErrorLog : public test::TransportTest {
 protected:
  ErrorLog() {
    std::string name = testing::TempDir() + "tavo-error-log-XXXXXX";
    folder_ = mkdtemp(name.data());
    folders_->folders = {"/nowhere", folder_};
    FatalFailure::sharedInstance().handler = [this](const std::string& reason) {
      failures_.push_back(reason);
    };
  }
  ~ErrorLog() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string file() const { return folder_ + "/CorvaneTAVOSDKDB.sqlite"; }

  // What another program reads in the file: a row a line, columns separated by "|".
  [[nodiscard]] std::vector<std::string> rows(const char* query = "SELECT * FROM ErrorLogs") const {
    std::vector<std::string> lines;
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(file().c_str(), &database), SQLITE_OK);
    const auto collect = [](void* target, int count, char** values, char**) {
      std::string line;
      for (int i = 0; i < count; ++i) line += std::string{i > 0 ? "|" : ""} + values[i];
      static_cast<std::vector<std::string>*>(target)->push_back(line);
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, query, collect, &lines, nullptr), SQLITE_OK);
    sqlite3_close(database);
    return lines;
  }

  std::string folder_;
  std::vector<std::string> failures_;
  std::shared_ptr<headless::HeadlessFolders> folders_ = platform_.folders;
};

TEST_F(ErrorLog, KeepsEntriesInOneTableWithThreeColumns) {
  platform_.runLoop->setEpoch(Date{std::chrono::milliseconds{1'400'000'000'250}});
  XErrorHandler::addErrorWithErrorId("E1", "first");
  platform_.runLoop->advance(Seconds{60});
  XErrorHandler::addErrorWithErrorId("E'2", "it's; \"broken\"\n\xFF");
  EXPECT_THAT(rows(), ElementsAre("E1|first|2014-05-13 16:53:20.250",
                                  "E'2|it's; \"broken\"\n\uFFFD|2014-05-13 16:54:20.250"));
  EXPECT_THAT(rows("SELECT name FROM pragma_table_info('ErrorLogs')"),
              ElementsAre("errorId", "errorDesc", "timeStamp"));
  EXPECT_THAT(rows("SELECT name FROM sqlite_master"), ElementsAre("ErrorLogs"));
  EXPECT_TRUE(failures_.empty());
}

TEST_F(ErrorLog, MakesItsPartsOnceAndSavesOnlyChanges) {
  XDatabase database{runtime_.environment()};
  EXPECT_EQ(database.applicationDocumentsDirectory(), folder_);
  const auto context = database.managedObjectContext();
  EXPECT_EQ(database.managedObjectContext(), context);
  EXPECT_FALSE(context->hasChanges());
  database.saveContext();
  context->insert({"a", "b", Date{std::chrono::milliseconds{-1}}});
  EXPECT_TRUE(rows().empty());
  database.saveContext();
  database.saveContext();
  EXPECT_THAT(rows(), ElementsAre("a|b|1969-12-31 23:59:59.999"));
}

TEST_F(ErrorLog, TakesEntriesFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      for (int j = 0; j < 5; ++j) XErrorHandler::addErrorWithErrorId("id", "text");
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(rows().size(), 20U);
  EXPECT_TRUE(failures_.empty());
}

TEST_F(ErrorLog, SaysWhyItFails) {
  folders_->folders = {"/nowhere/at/all"};
  XErrorHandler::addErrorWithErrorId("id", "text");
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("/nowhere/at/all/CorvaneTAVOSDKDB.sqlite cannot be "
                                               "opened: unable to open database file")));
  EXPECT_EQ(platform_.log->messages(), failures_);

  failures_.clear();
  folders_->folders.clear();
  XErrorHandler::addErrorWithErrorId("id", "text");
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("no folder for documents")));
  EXPECT_FALSE(std::filesystem::exists("/CorvaneTAVOSDKDB.sqlite"));

  failures_.clear();
  folders_->folders = {folder_};
  std::ofstream{file()} << "this is no database, whatever its name says. " << std::string(500, 'x');
  XErrorHandler::addErrorWithErrorId("id", "text");
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("file is not a database")));
}

TEST_F(ErrorLog, FailsWhenAChangeCannotBeSaved) {
  XDatabase database{runtime_.environment()};
  database.managedObjectContext()->insert({"a", "b", Date{}});
  database.persistentStoreCoordinator()->run("DROP TABLE ErrorLogs");
  database.saveContext();
  EXPECT_THAT(failures_, ElementsAre(HasSubstr("cannot be saved: ")));
  EXPECT_TRUE(database.managedObjectContext()->hasChanges());
}

using ErrorLogDeathTest = ErrorLog;

TEST_F(ErrorLogDeathTest, EndsTheProcessByDefault) {
  FatalFailure::sharedInstance().handler = nullptr;
  folders_->folders.clear();
  EXPECT_EXIT(FatalFailure::sharedInstance().raise("reason"), testing::KilledBySignal(SIGABRT), "");
}

class ErrorLogDebug : public test::TransportTest {
 protected:
  // What `action` writes to the standard error stream.
  template <typename Action>
  static std::string written(const Action& action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(ErrorLogDebug, WritesNothingWhileItIsOff) {
  EXPECT_EQ(written([] {
              const OperationLog log{"-[X y]"};
              log.debug("text");
              ExtendNSLog("a/b.cpp", 1, "function", "text");
            }),
            "");
}

TEST_F(ErrorLogDebug, WritesOneEntryWithOneNewlineAtItsEnd) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  EXPECT_EQ(written([] { ExtendNSLog("a/b.cpp", 7, "function", "100%s"); }),
            "\nDebug:\nb.cpp:7\nfunction \n100%s\n");
  EXPECT_EQ(written([] { ExtendNSLog("b.cpp", 8, "", "text\n"); }), "\nDebug:\nb.cpp:8\n \ntext\n");
}

TEST_F(ErrorLogDebug, WritesStartAndEndOfAnOperation) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  const auto text = written([] {
    const OperationLog log{"-[X y]"};
    log.debug("\n\nNumber: ", 5, " ", std::string{"text"});
  });
  const auto start = text.find("\n\n\nStart: -[X y]\n");
  const auto middle = text.find("\n\nNumber: 5 text\n");
  const auto end = text.find("\n\n\nEnd: -[X y]\n");
  EXPECT_LT(start, middle);
  EXPECT_LT(middle, end);
  EXPECT_NE(end, std::string::npos);
  EXPECT_THAT(text, HasSubstr("ErrorLogTest.cpp:"));
}

TEST_F(ErrorLogDebug, AHostsOwnRecordSwitchesNothing) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  XGlobalConfiguration{}.enableDebugLogs = true;
  EXPECT_TRUE(isDebugLogEnabled());
  XGlobalConfiguration own;
  own.enableDebugLogs = true;
  XGlobalConfiguration::sharedInstance().enableDebugLogs = false;
  EXPECT_FALSE(isDebugLogEnabled());
}

TEST_F(ErrorLogDebug, WritesTheEndOfAnOperationThatSwitchesItOn) {
  EXPECT_THAT(written([] {
                const OperationLog log{"-[X y]"};
                XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
                log.debug("middle");
              }),
              AllOf(HasSubstr("middle\n"), HasSubstr("\n\n\nEnd: -[X y]\n")));
}

TEST_F(ErrorLogDebug, ClosesALineByItsFormatAndNotByItsValues) {
  XGlobalConfiguration::sharedInstance().enableDebugLogs = true;
  const OperationLog log{"-[X y]"};
  EXPECT_THAT(written([&] { log.debug("a: ", std::string{"b\n"}); }),
              testing::EndsWith("a: b\n\n"));
  EXPECT_THAT(written([&] { log.debug("a: ", 1, " b\n"); }), testing::EndsWith("a: 1 b\n"));
}

}  // namespace
}  // namespace tavo::test
