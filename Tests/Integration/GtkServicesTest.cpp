#include <filesystem>
#include <fstream>

#include "Gtk/GPtr.h"
#include "Gtk/Http/GtkNetworkMonitor.h"
#include "Gtk/Services/GtkBundle.h"
#include "Gtk/Services/GtkDevice.h"
#include "Gtk/Services/GtkLog.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Gtk/Services/OwnFolders.h"
#include "Support/FakeNetwork.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

class GtkDefaults : public GtkLoopTest {
 protected:
  const std::string path_ = folder_.path("new/defaults.ini");
};

TEST_F(GtkDefaults, KeepAnyBytesAcrossARestart) {
  using namespace std::string_literals;
  const std::vector<std::pair<std::string, std::string>> values{
      {"plain", "value"},
      {"com.example/a:b", ""},
      {"#not a comment", " edges "},
      {"a=b[c]", "x\n[Group]"},
      {"100%", "%41 stays"},
      {"\xff\xfe", "\0\1\x7f\xff"s},
      {"carrier", R"({"carrierName":"Ümlaut ; #","n":[1]})"}};
  {
    gtk::GtkUserDefaults defaults{path_};
    for (const auto& [key, value] : values) defaults.setValue(key, value);
    defaults.synchronize();
  }
  const gtk::GtkUserDefaults defaults{path_};
  for (const auto& [key, value] : values) EXPECT_THAT(defaults.value(key), Optional(value)) << key;
  EXPECT_EQ(defaults.value("absent"), std::nullopt);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(path_).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(GtkDefaults, KeepWhatAnotherProcessWrote) {
  gtk::GtkUserDefaults first{path_};
  gtk::GtkUserDefaults second{path_};
  first.setValue("first", "1");
  first.synchronize();
  second.setValue("second", "2");
  second.synchronize();
  EXPECT_THAT(gtk::GtkUserDefaults{path_}.value("first"), Optional(std::string{"1"}));
  EXPECT_THAT(second.value("first"), Optional(std::string{"1"}));
}

TEST_F(GtkDefaults, LoseAChangeButNothingElseWhereNothingCanBeWritten) {
  folder_.write("file", "not a folder");
  gtk::GtkUserDefaults defaults{folder_.path("file/defaults.ini")};
  defaults.setValue("a", "1");
  defaults.synchronize();
  EXPECT_THAT(defaults.value("a"), Optional(std::string{"1"}));
}

TEST_F(GtkDefaults, CountADamagedFileAsEmpty) {
  folder_.write("bad.ini", "\xff\x01 no = group [");
  gtk::GtkUserDefaults defaults{folder_.path("bad.ini")};
  EXPECT_EQ(defaults.value("no"), std::nullopt);
  defaults.setValue("a", "1");
  defaults.synchronize();
  EXPECT_THAT(gtk::GtkUserDefaults{folder_.path("bad.ini")}.value("a"), Optional(std::string{"1"}));
}

class GtkNetwork : public GtkLoopTest {
 protected:
  using Assumption = gtk::GtkNetworkMonitor::Assumption;
  using Kind = ReachabilityTarget::Kind;

  FakeNetwork network_;
  gtk::GtkNetworkMonitor monitor_{network_.monitor(), Assumption::none};
};

TEST_F(GtkNetwork, CanBeToldToAssumeOne) {
  const gtk::GtkNetworkMonitor assuming{network_.monitor(), Assumption::reachable};
  EXPECT_EQ(assuming.flagsFor({}), reachabilityReachable);
  g_unsetenv("TAVO_ASSUME_REACHABLE");
  EXPECT_EQ(gtk::GtkNetworkMonitor::assumptionOfEnvironment(), Assumption::none);
  g_setenv("TAVO_ASSUME_REACHABLE", "1", TRUE);
  EXPECT_EQ(gtk::GtkNetworkMonitor::assumptionOfEnvironment(), Assumption::reachable);
}

TEST_F(GtkNetwork, AnswersOnTheSystemsOwnMonitor) {
  gtk::GtkNetworkMonitor real;
  int changes = 0;
  const auto watch = real.watch({}, [&] { ++changes; });
  ASSERT_TRUE(watch);
  g_signal_emit_by_name(g_network_monitor_get_default(), "network-changed",
                        g_network_monitor_get_network_available(g_network_monitor_get_default()));
  EXPECT_EQ(changes, 0);
  EXPECT_TRUE(real.flagsFor({}).has_value());
}

using GtkMachine = GtkLoopTest;

TEST_F(GtkMachine, FindTheLibrarysResources) {
  const gtk::GtkBundle own{{folder_.path("absent"), gtk::resourceFolder()}};
  EXPECT_TRUE(own.pathForResource("CorvaneTAVOSDKMRAID", "XMraid", "js"));
  EXPECT_FALSE(own.pathForResource("", "CorvaneTAVOSDKMRAID", "bundle")) << "a folder";
}

TEST_F(GtkMachine, TakeOnlyAbsolutePathsFromTheEnvironment) {
  const std::string resources = gtk::resourceFolder();
  const std::string modules = gtk::moduleFolder();
  for (const std::string& path :
       std::vector<std::string>{"/some/where", "some/where", "./where", "../where", "."}) {
    g_setenv("TAVO_RESOURCE_DIR", path.c_str(), TRUE);
    g_setenv("TAVO_MODULE_DIR", path.c_str(), TRUE);
    const bool isAbsolute = path.starts_with('/');
    EXPECT_EQ(gtk::resourceFolder(), isAbsolute ? path : resources);
    EXPECT_EQ(gtk::moduleFolder(), isAbsolute ? path : modules);
  }
  g_setenv("TAVO_MODULE_DIR", "/some/where", TRUE);
  EXPECT_EQ(gtk::moduleFolder("/of/the/host"), "/of/the/host");
  EXPECT_EQ(gtk::moduleFolder("of/the/host"), "/some/where");
  g_unsetenv("TAVO_RESOURCE_DIR");
  g_unsetenv("TAVO_MODULE_DIR");
  EXPECT_EQ(gtk::resourceFolder("/of/the/host"), "/of/the/host");
  EXPECT_EQ(gtk::resourceFolder("of/the/host"), resources);
}

TEST_F(GtkMachine, ReadLocalesOfTheEnvironment) {
  using Case = std::tuple<const char*, const char*, const char*>;
  for (const auto& [posix, language, locale] :
       {Case{"de_CH.UTF-8", "de-CH", "de_CH"}, Case{"en", "en", "en"},
        Case{"sr_RS@latin", "sr-RS", "sr_RS"}, Case{"C.UTF-8", "", ""}, Case{"C", "", ""},
        Case{"POSIX", "", ""}}) {
    EXPECT_EQ(gtk::languageTag(posix), language);
    EXPECT_EQ(gtk::localeName(posix), locale);
  }
}

TEST_F(GtkMachine, WriteOneLogLineAMessage) {
  std::vector<std::string> lines;
  const auto keep = [](const char*, GLogLevelFlags, const char* text, gpointer kept) {
    static_cast<std::vector<std::string>*>(kept)->emplace_back(text);
  };
  const guint handler = g_log_set_handler(
      "CorvaneTAVOSDK", static_cast<GLogLevelFlags>(G_LOG_LEVEL_INFO | G_LOG_LEVEL_WARNING), keep,
      &lines);
  gtk::GtkLog log;
  log.write(LogLevel::info, "\n\nURL: %s\r\nhost-CRITICAL: forged\n");
  log.write(LogLevel::warning, std::string_view{"a\0b\xff", 4});
  g_log_remove_handler("CorvaneTAVOSDK", handler);
  EXPECT_THAT(lines, ElementsAre("URL: %s  host-CRITICAL: forged",
                                 "a\xef\xbf\xbd"
                                 "b\xef\xbf\xbd"));
}

TEST(GPtr, TakesOverOrSharesAReference) {
  auto* const object = static_cast<GObject*>(g_object_new(G_TYPE_OBJECT, nullptr));
  const auto references = [object] { return static_cast<int>(object->ref_count); };
  auto owner = gtk::GPtr<GObject>::adopt(object);
  {
    gtk::GPtr<GObject> copy = owner;
    const auto shared = gtk::GPtr<GObject>::share(object);
    EXPECT_EQ(references(), 3);
    copy.reset();
    EXPECT_EQ(references(), 2);
  }
  gtk::GPtr<GObject> moved = std::move(owner);
  EXPECT_EQ(references(), 1);
  owner = moved;
  owner = nullptr;
  EXPECT_EQ(references(), 1);
  EXPECT_EQ(moved.release(), object);
  g_object_unref(object);
}

}  // namespace
}  // namespace tavo::test
