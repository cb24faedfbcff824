#include <gtk/gtk.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <tavo/gtk/GtkPlatform.h>

#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Gtk/Services/HelperProgram.h"
#include "Headless/HeadlessServices.h"
#include "Support/GtkLoopTest.h"
#include "Support/Places.h"
#include "Support/WebPage.h"

namespace tavo::test {
namespace {

bool engineIsMapped() {
  std::ifstream maps{"/proc/self/maps"};
  const std::string text{std::istreambuf_iterator<char>{maps}, {}};
  return text.find("libwebkitgtk") != std::string::npos;
}

class WebModuleTest : public GtkLoopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(gtk_init_check()); }

  std::unique_ptr<gtk::GtkWebModule> module(
      const std::filesystem::path& folder = gtk::moduleFolder()) {
    return std::make_unique<gtk::GtkWebModule>(
        gtk::GtkWebModule::Services{
            .runLoop = runLoop_, .userDefaults = defaults_, .log = log_, .cookies = cookies_},
        folder);
  }
  static bool runUntil(const std::function<bool()>& done) {
    return test::runUntil(done, std::chrono::seconds{30});
  }
  // A program in the test's folder that stands in for the one that asks the engine.
  void installHelper(const std::string& script) {
    const auto file = folder_.path("tavo-web-user-agent");
    std::ofstream{file} << "#!/bin/sh\n" << script << '\n';
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  std::shared_ptr<gtk::GtkUserDefaults> defaults_ =
      std::make_shared<gtk::GtkUserDefaults>(folder_.path("defaults.ini"));
  std::shared_ptr<gtk::GtkCookieStore> cookies_ =
      std::make_shared<gtk::GtkCookieStore>(runLoop_, folder_.path("cookies.sqlite"));
  std::shared_ptr<headless::HeadlessLog> log_ = std::make_shared<headless::HeadlessLog>();
};

TEST_F(WebModuleTest, TheEngineIsNotMappedBeforeTheFirstPage) {
  const auto unused = module();
  const auto helped = module()->userAgent();
  EXPECT_THAT(helped, HasSubstr("AppleWebKit/"));
  EXPECT_FALSE(engineIsMapped());

  const auto used = module();
  used->warmUp({.owner = this});
  EXPECT_FALSE(used->isLoaded()) << "mapping it takes longer than a frame";
  runUntil([&] { return used->isLoaded(); });
  const auto view = used->create({0, 0, 320, 50}, {});
  EXPECT_TRUE(engineIsMapped());
  EXPECT_TRUE(used->isLoaded());
  EXPECT_EQ(used->userAgent(), helped) << "the helper program and the engine disagree";
}

TEST_F(WebModuleTest, TheUserAgentIsAskedForOncePerInstalledEngine) {
  installHelper("echo 'First/1.0'");
  EXPECT_EQ(module(folder_.path(""))->userAgent(), "First/1.0");
  installHelper("echo 'Second/1.0'");
  EXPECT_EQ(module(folder_.path(""))->userAgent(), "First/1.0");
  // Another process has nothing but the file.
  defaults_ = std::make_shared<gtk::GtkUserDefaults>(folder_.path("defaults.ini"));
  EXPECT_EQ(module(folder_.path(""))->userAgent(), "First/1.0");
  defaults_->setValue("tavo.webEngine.identity", "another engine");
  EXPECT_EQ(module(folder_.path(""))->userAgent(), "Second/1.0");
}

TEST_F(WebModuleTest, TheHostGoesOnWhileTheUserAgentIsAskedFor) {
  installHelper("read line < " + folder_.path("release") + " && echo 'Slow/1.0'");
  ASSERT_EQ(mkfifo(folder_.path("release").c_str(), 0600), 0);
  const auto asked = module(folder_.path(""));
  int found = 0;
  for (int asker = 0; asker < 2; ++asker) asked->findUserAgent([&] { ++found; });
  settle();
  EXPECT_EQ(found, 0);
  folder_.write("release", "go\n");
  runUntil([&] { return found == 2; });
  EXPECT_EQ(found, 2);
  EXPECT_EQ(asked->userAgent(), "Slow/1.0");
  asked->findUserAgent([&] { ++found; });
  EXPECT_EQ(found, 3) << "known by now";
}

TEST_F(WebModuleTest, AnEngineThatIsBeingAskedIsNotAskedAgain) {
  installHelper("echo run >> " + folder_.path("runs") + "; echo 'Once/1.0'");
  const auto asked = module(folder_.path(""));
  bool found = false;
  asked->findUserAgent([&] { found = true; });
  EXPECT_EQ(asked->userAgent(), "Once/1.0");
  runUntil([&] { return found; });
  EXPECT_EQ(contentsOf(folder_.path("runs")), "run\n");
}

TEST_F(WebModuleTest, WhatTheEngineItselfHasSaidStands) {
  installHelper("read line < " + folder_.path("release") + "; exit 1");
  ASSERT_EQ(mkfifo(folder_.path("release").c_str(), 0600), 0);
  std::filesystem::create_symlink(gtk::moduleFolder() / "TavoGtkWeb.so",
                                  folder_.path("TavoGtkWeb.so"));
  const auto asked = module(folder_.path(""));
  bool found = false;
  asked->findUserAgent([&] { found = true; });
  const auto view = asked->create({0, 0, 320, 50}, {});
  const auto said = asked->userAgent();
  folder_.write("release", "go\n");
  runUntil([&] { return found; });
  EXPECT_EQ(asked->userAgent(), said);
  EXPECT_THAT(log_->messages(), IsEmpty());
}

TEST_F(WebModuleTest, ANewEngineIsAskedBeforeAnybodyWaits) {
  installHelper("echo 'Early/1.0'");
  const auto platform = gtk::makePlatform({.applicationId = "com.example.early",
                                           .dataFolder = folder_.path("data"),
                                           .moduleFolder = folder_.path("")});
  EXPECT_TRUE(runUntil(
      [&] { return platform.userDefaults->value("tavo.webEngine.userAgent") == "Early/1.0"; }));
}

TEST_F(WebModuleTest, ASignalDuringTheWaitIsNoTimeOut) {
  struct sigaction ignored {};
  ignored.sa_handler = [](int) {};
  struct sigaction before {};
  sigaction(SIGALRM, &ignored, &before);
  const itimerval often{{0, 5'000}, {0, 5'000}};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_EQ(gtk::runHelperProgram({"/bin/sh", "-c", "sleep 0.3; echo done"}, Seconds{30}),
            "done\n");
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
}

TEST_F(WebModuleTest, AFixedUserAgentStandsInForAnEngineThatGivesNone) {
  for (const char* script : {"", "exit 1", "echo 'Half/1.0'; exit 1"}) {
    if (*script != '\0') installHelper(script);
    EXPECT_THAT(module(folder_.path(""))->userAgent(), HasSubstr("AppleWebKit/")) << script;
    EXPECT_FALSE(defaults_->value("tavo.webEngine.userAgent").has_value()) << script;
  }
  EXPECT_THAT(log_->messages(), SizeIs(3));
}

// The engine would end the host when its first process starts.
TEST_F(WebModuleTest, AnEngineThatCannotReachThePersonsSessionIsNotStarted) {
  for (const auto& [variable, value] :
       {std::pair{"XAUTHORITY", "/etc/passwd/authority"},
        std::pair{"PULSE_SERVER", "unix:/etc/passwd/socket"},
        std::pair{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/etc/passwd/folder/bus,guid=1"}}) {
    SCOPED_TRACE(variable);
    const char* const before = g_getenv(variable);
    const std::string kept = before == nullptr ? "" : before;
    g_setenv(variable, value, TRUE);
    const auto factory = module();
    const auto view = factory->create({0, 0, 320, 50}, {});
    before == nullptr ? g_unsetenv(variable) : (void)g_setenv(variable, kept.c_str(), TRUE);
    const auto client = std::make_shared<Recorder>();
    view->setClient(client);
    view->loadHtml("<html></html>", {});
    runUntil([&] { return !client->events.empty(); });
    EXPECT_THAT(client->events, ElementsAre("fail WebKitErrorDomain 1102"));
  }
}

TEST_F(WebModuleTest, WithoutAModuleEveryLoadFails) {
  const auto broken = folder_.path("TavoGtkWeb.so");
  for (const bool fileIsThere : {false, true}) {
    if (fileIsThere) std::ofstream{broken} << "not a module";
    const auto factory = module(folder_.path(""));
    const auto view = factory->create({0, 0, 320, 50}, {});
    const auto client = std::make_shared<Recorder>();
    view->setClient(client);
    view->loadHtml("<html></html>", {});
    view->loadUrl(Url::parse("http://127.0.0.1:9/"));
    std::vector<std::string> results;
    view->evaluate("1 + 1", [&](const std::string& result) { results.push_back(result); });
    EXPECT_THAT(client->events, IsEmpty());
    runUntil([&] { return !results.empty(); });
    EXPECT_THAT(client->events,
                ElementsAre("fail WebKitErrorDomain 1102", "fail WebKitErrorDomain 1102"));
    EXPECT_THAT(results, ElementsAre(""));
    const std::size_t notes = log_->messages().size();
    factory->warmUp({.owner = this});
    EXPECT_FALSE(factory->isLoaded());
    const auto unused = module(folder_.path(""));
    unused->warmUp({.owner = this});
    runUntil([&] { return log_->messages().size() > notes; });
    EXPECT_FALSE(unused->isLoaded()) << "it tried beside the loop, and said so";
  }
  EXPECT_THAT(log_->messages(), SizeIs(4));
}

TEST_F(WebModuleTest, AModuleOfAnotherVersionIsNotUsed) {
  std::filesystem::copy_file(TAVO_OLD_MODULE, folder_.path("TavoGtkWeb.so"));
  const auto updated = module(folder_.path(""));
  EXPECT_NE(updated->create({0, 0, 320, 50}, {}), nullptr);
  EXPECT_FALSE(updated->isLoaded());
  EXPECT_THAT(log_->messages(), ElementsAre(HasSubstr("version 0.9.0")));
}

TEST(HelperProgramTest, GivesTheOutputOfAProgramThatSucceedsInTime) {
  using Case = std::pair<std::vector<std::string>, std::optional<std::string>>;
  const std::vector<Case> cases{
      {{"/bin/echo", "a", "b c"}, "a b c\n"},
      {{"/bin/true"}, ""},
      {{"/bin/false"}, std::nullopt},
      {{"/no/such/program"}, std::nullopt},
      {{"/bin/sh", "-c", "kill -9 $$"}, std::nullopt},
      {{"/bin/sh", "-c", "exec sleep 600"}, std::nullopt},
      {{"/bin/sh", "-c", "exec >&-; exec sleep 600"}, std::nullopt},
      {{"/usr/bin/yes"}, std::nullopt},
  };
  for (const auto& [arguments, output] : cases) {
    EXPECT_EQ(gtk::runHelperProgram(arguments, Seconds{2}), output)
        << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace tavo::test
