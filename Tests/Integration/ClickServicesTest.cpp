// What leaves the library for the desktop: URIs, event files, pictures; read where they arrive.

#include <gtkmm.h>
#include <libintl.h>
#include <sys/resource.h>

#include <clocale>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

#include <tavo/Limits.h>

#include "Gtk/Modules/GtkCalendarModule.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/Services/GtkImageDecoder.h"
#include "Gtk/Services/GtkPhotoAlbum.h"
#include "Gtk/Services/NewFile.h"
#include "Gtk/Sheets/ComposerUris.h"
#include "Gtk/Sheets/EventSheet.h"
#include "Gtk/Sheets/GtkCalendarAccess.h"
#include "Gtk/Sheets/Sheet.h"
#include "Runtime/NotificationCenter.h"
#include "Support/GtkLoopTest.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"

namespace tavo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

StandInHandlers handlers;  // before GLib reads where the user's folders are

std::vector<std::string> filesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code absent;
  for (const auto& entry : fs::directory_iterator{folder, absent}) {
    names.push_back(entry.path().filename());
  }
  return names;
}

class ClickServices : public GtkLoopTest {
 protected:
  ClickServices() {
    Gio::init();
    handlers.clear();
    fs::remove_all(handlers.picturesFolder());
  }

  // What the handlers got, once there is so much of it.
  std::vector<std::string> receivedAfter(std::size_t count) {
    // A handler is another process: nothing tells when it has written.
    const Timer look = runLoop_->every(Seconds{0.02}, [] {});
    runUntil([count] { return handlers.received().size() >= count; });
    return handlers.received();
  }

  gtk::GtkApplication application_{std::make_shared<NotificationCenter>(), Limits{}.widgetSide};
};

TEST_F(ClickServices, UrlsReachTheirHandlersByteForByte) {
  const std::vector<std::string> urls{
      "tel:+41%2044;phone-context=a",      "facetime:a@b.example",
      "sms:123,456?body=Hi%20there",       "mailto:a@b.example?subject=S%20T",
      "http://127.0.0.1:1/p?a=b&c=d%27#e", "https://a.example/$(touch%20x);touch",
      "tel:'$(reboot)'&&exit;*?!~",
  };
  for (std::size_t at = 0; at < urls.size(); ++at) {
    const Url url = Url::parse(urls[at]);
    ASSERT_FALSE(url.empty()) << urls[at];
    EXPECT_TRUE(application_.canOpenUrl(url));
    EXPECT_TRUE(application_.openUrl(url));
    EXPECT_THAT(receivedAfter(at + 1), SizeIs(at + 1));
  }
  EXPECT_EQ(handlers.received(), urls);
}

TEST_F(ClickServices, UrlsWithoutAHandlerAndBeyondMeasureAreRefused) {
  for (const std::string& text :
       {std::string{"unknown:x"}, std::string{"javascript:alert(1)"}, std::string{"relative"},
        std::string{}, std::string{"file:///etc/passwd"}, std::string{"data:text/html,x"},
        std::string{"%"}, "tel:" + std::string(1'000'000, '1')}) {
    EXPECT_FALSE(application_.openUrl(Url::fromText(text))) << text.substr(0, 20);
  }
  EXPECT_FALSE(application_.canOpenUrl(Url::parse("unknown:x")));
  EXPECT_THAT(handlers.received(), IsEmpty());
}

TEST(ComposerUris, KeepEveryTextInItsPlace) {
  using Row = std::pair<MessageDraft, const char*>;
  for (const auto& [draft, uri] : std::vector<Row>{
           {{{"123", " +41 44 "}, "Hi there"}, "sms:123,+41%2044?body=Hi%20there"},
           {{{""}, ""}, "sms:"},
           {{{"1?body=x", "2;3&4"}, "a&b=c#d%"},
            "sms:1%3Fbody%3Dx,2%3B3%264?body=a%26b%3Dc%23d%25"},
           {{{"1\r\n2"}, "ü\n"}, "sms:1%0D%0A2?body=%C3%BC%0A"},
       }) {
    EXPECT_EQ(gtk::messageUri(draft).text(), uri);
  }
  EXPECT_EQ(gtk::mailUri({{"a@b.example", "c"}, "S%20T", "one\ntwo & three"}).text(),
            "mailto:a@b.example,c?subject=S%2520T&body=one%0D%0Atwo%20%26%20three");
  EXPECT_EQ(gtk::mailUri({{"a?bcc=x@y\nTo: z"}, "", "b"}).text(),
            "mailto:a%3Fbcc%3Dx@y%0ATo%3A%20z?body=b");
  EXPECT_EQ(gtk::mailUri({}).text(), "mailto:");
}

TEST(SheetText, IsCutAndFreeOfControlCharacters) {
  using gtk::Lines;
  EXPECT_EQ(gtk::presentable("a\tb\nc\x07\x7f", Lines::one, 100), "a b c  ");
  EXPECT_EQ(gtk::presentable("a\tb\nc", Lines::many, 100), "a b\nc");
  EXPECT_EQ(gtk::presentable("\xff\xc3\xbc", Lines::one, 100), "\xEF\xBF\xBD\xC3\xBC");
  EXPECT_EQ(gtk::presentable(std::string(1'000'000, 'x'), Lines::one, 10), "xxxxxxxxxx");
  EXPECT_EQ(gtk::presentable("\xc3\xbc\xc3\xbc\xc3\xbc", Lines::one, 2), "\xc3\xbc\xc3\xbc");
}

constexpr Date start{std::chrono::seconds{1'795'255'200}};  // 2026-11-21T10:00:00Z

CalendarEvent someEvent() {
  return {.title = "Opening; with, a \\ and\nEND:VEVENT",
          .notes = "Line one\nLine two " + std::string(200, 'x') + " ü",
          .location = "Hall 1",
          .start = start,
          .end = start + 90min,
          .alarm = CalendarAlarm{Seconds{-600}}};
}

TEST(CalendarFile, SaysWhenTheEventIs) {
  const auto file = [](const CalendarEvent& event) {
    return gtk::GtkCalendarModule{}.file(event, "an-id", start - 24h).value_or("none");
  };
  EXPECT_THAT(
      file(someEvent()),
      AllOf(HasSubstr("DTSTART:20261121T100000Z\r\n"), HasSubstr("DTEND:20261121T113000Z\r\n"),
            HasSubstr("DTSTAMP:20261120T100000Z\r\n"), HasSubstr("UID:an-id\r\n"),
            HasSubstr("TRIGGER:-PT10M\r\n")));
  const std::pair<CalendarAlarm, const char*> alarms[] = {
      {start - 1h, "TRIGGER;VALUE=DATE-TIME:20261121T090000Z"},
      {Seconds{90}, "TRIGGER:PT1M30S"},
      {Seconds{0}, "TRIGGER:PT0S"},
      {Seconds{-100.0 * 366 * 24 * 3600}, "TRIGGER:-P"}};
  for (const auto& [alarm, trigger] : alarms) {
    EXPECT_THAT(file({"t", "", "", start, start, alarm}), HasSubstr(trigger));
  }
  EXPECT_EQ(file({"t", "", "", start, start - 1s, {}}), "none") << "it ends before it starts";
}

TEST(CalendarFile, NeedsItsModuleAndSaysSo) {
  gtk::GtkCalendarModule absent{"/no/such/folder"};
  std::string reason;
  EXPECT_FALSE(absent.isAvailable(reason));
  EXPECT_THAT(reason, HasSubstr("TavoGtkCalendar.so"));
  EXPECT_EQ(absent.file(someEvent(), "an-id", start), std::nullopt);
}

TEST_F(ClickServices, EventsReachTheCalendarAsAFile) {
  gtk::GtkCalendarAccess calendar{runLoop_, folder_.path("events")};
  std::optional<Error> result{Error{"pending", 0, ""}};
  calendar.save(someEvent(), [&](const std::optional<Error>& error) { result = error; });
  EXPECT_TRUE(result) << "never inside the call";
  settle();
  EXPECT_EQ(result, std::nullopt);
  const auto received = receivedAfter(1);
  ASSERT_THAT(received, SizeIs(1));
  const fs::path file{received[0]};  // GIO hands a local file on as its path
  EXPECT_EQ(file.parent_path(), folder_.path("events"));
  EXPECT_THAT(contentsOf(file), HasSubstr("LOCATION:Hall 1\r\n"));
  if (const char* keep = g_getenv("TAVO_TEST_PICTURES")) {
    fs::copy_file(file, fs::path{keep} / "event.ics", fs::copy_options::overwrite_existing);
  }
}

TEST_F(ClickServices, EventsThatCannotBeSavedSayWhyAndLeaveNothing) {
  const auto save = [this](const std::string& folder, const CalendarEvent& event) {
    gtk::GtkCalendarAccess calendar{runLoop_, folder};
    std::string reason;
    bool done = false;
    calendar.save(event, [&](const std::optional<Error>& error) {
      reason = error ? error->description : "saved";
      done = true;
    });
    runUntil([&] { return done; });
    return reason;
  };
  folder_.write("file", "not a folder");
  EXPECT_THAT(save(folder_.path("file/events"), someEvent()), HasSubstr("could not be written"));
  CalendarEvent backward = someEvent();
  backward.end = backward.start - 1h;
  EXPECT_EQ(save(folder_.path("events"), backward), "The event ends before it starts.");
  handlers.setRegistered("text/calendar", false);
  ASSERT_TRUE(runUntil([] { return !Gio::AppInfo::get_default_for_type("text/calendar"); }));
  EXPECT_EQ(save(folder_.path("events"), someEvent()), "There is no calendar application.");
  handlers.setRegistered("text/calendar", true);
  EXPECT_THAT(filesIn(folder_.path("events")), IsEmpty());
  EXPECT_THAT(handlers.received(), IsEmpty());
}

TEST_F(ClickServices, AccessToTheCalendarIsAnsweredLater) {
  gtk::GtkCalendarAccess calendar{runLoop_, folder_.path("events")};
  bool granted = false;
  calendar.requestAccess([&](bool answer) { granted = answer; });
  EXPECT_FALSE(granted);
  settle();
  EXPECT_TRUE(granted);
  EXPECT_TRUE(calendar.canRequestAccess());
}

TEST(EventTimes, AreReadAsTheyAreShown) {
  EXPECT_EQ(gtk::momentFromText(gtk::momentText(start)), start);
  for (const char* text : {"", "soon", "2026-11-21", "2026-11-21 10:00 x", "2026-13-01 10:00",
                           "9999-01-01 10:00", "1000-01-01 10:00"}) {
    EXPECT_EQ(gtk::momentFromText(text), std::nullopt) << text;
  }
}

class PhotoAlbumTest : public ClickServices {
 protected:
  PhotoAlbumTest() {
    GdkPixbuf* pixels = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 5, 4);
    gdk_pixbuf_fill(pixels, 0xff8000ff);
    for (const char* format : {"png", "jpeg"}) {
      char* data = nullptr;
      gsize size = 0;
      gdk_pixbuf_save_to_buffer(pixels, &data, &size, format, nullptr, nullptr);
      bytes_[format] = std::string{data, size};
      g_free(data);
    }
    g_object_unref(pixels);
  }

  // "saved", or what the album says.
  std::string save(const std::string& bytes, const std::string& folder = {}) {
    gtk::GtkPhotoAlbum album{runLoop_,
                             folder.empty() ? gtk::GtkPhotoAlbum::defaultFolder() : folder};
    const gtk::GtkImageDecoder decoder{runLoop_, 25'000'000};
    std::string outcome;
    album.save(bytes, decoder.decodeNow(bytes), [&](const std::optional<Error>& error) {
      outcome = error ? std::to_string(error->code) + " " + error->description : "saved";
    });
    EXPECT_EQ(outcome, "") << "never inside the call";
    runUntil([&] { return !outcome.empty(); });
    return outcome;
  }

  std::map<std::string, std::string> bytes_;
};

TEST_F(PhotoAlbumTest, PicturesAreKeptAsTheyCameUnderNewNames) {
  EXPECT_EQ(gtk::GtkPhotoAlbum::defaultFolder(), handlers.picturesFolder());
  for (int time = 0; time < 3; ++time) EXPECT_EQ(save(bytes_["png"]), "saved");
  EXPECT_EQ(save(bytes_["jpeg"]), "saved");
  const auto names = filesIn(handlers.picturesFolder());
  ASSERT_THAT(names, SizeIs(4));
  for (const auto& name : names) {
    const fs::path path = fs::path{handlers.picturesFolder()} / name;
    EXPECT_EQ(contentsOf(path), bytes_[path.extension() == ".jpg" ? "jpeg" : "png"]);
    int width = 0;
    EXPECT_NE(gdk_pixbuf_get_file_info(path.c_str(), &width, nullptr), nullptr);
    EXPECT_EQ(width, 5);
    EXPECT_THAT(name, StartsWith("Picture 2"));
  }
}

TEST_F(PhotoAlbumTest, NothingIsEverOverwritten) {
  std::string reason;
  folder_.write("a.png", "mine");
  fs::create_symlink(folder_.path("elsewhere"), folder_.path("a (2).png"));
  const auto written = gtk::writeNewFile(folder_.path(""), "a", ".png", "theirs", reason);
  ASSERT_TRUE(written);
  EXPECT_EQ(fs::path{*written}.filename(), "a (3).png");
  EXPECT_EQ(contentsOf(folder_.path("a.png")), "mine");
  EXPECT_FALSE(fs::exists(folder_.path("elsewhere")));
}

TEST_F(PhotoAlbumTest, WhatIsNoPictureIsRefused) {
  for (const std::string& bytes : {std::string{}, bytes_["png"].substr(0, 20)}) {
    EXPECT_EQ(save(bytes), "1 There is no picture.");
  }
  EXPECT_THAT(filesIn(handlers.picturesFolder()), IsEmpty());
}

class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST_F(PhotoAlbumTest, AFullDiskLeavesNothingBehind) {
  {
    const FullDisk disk{8};
    EXPECT_THAT(save(bytes_["png"]), HasSubstr("2 The picture could not be written: "));
  }
  EXPECT_THAT(filesIn(handlers.picturesFolder()), IsEmpty());
  folder_.write("file", "not a folder");
  EXPECT_THAT(save(bytes_["png"], folder_.path("file/x")), HasSubstr("could not be written"));
}

TEST_F(ClickServices, TitlesComeFromTheHostsTranslations) {
  EXPECT_EQ(application_.localizedString("Yes_Title"), "Yes_Title");
  EXPECT_EQ(application_.localizedString(""), "");
  g_setenv("LANGUAGE", "de", TRUE);
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  bindtextdomain("host", (testData() + "/locale").c_str());
  bind_textdomain_codeset("host", "UTF-8");
  textdomain("host");
  EXPECT_EQ(application_.localizedString("Yes_Title"), "Ja, bitte");
  EXPECT_EQ(application_.localizedString("No_Title"), "No_Title");
  textdomain("messages");
  g_unsetenv("LANGUAGE");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace tavo::test
