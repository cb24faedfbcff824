// What a screen reader hears of the library's controls, and how the keyboard reaches them. A
// program of its own asks, by way of the bus that readers use.

#include <unistd.h>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/gtk/AdWindow.h>
#include <tavo/gtk/MovieSlot.h>

#include "Gtk/Scene/NativeView.h"
#include "Services/Composers.h"
#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/ScreenKeys.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

StandInHandlers handlers;  // before GLib reads where the user's folders are

// No sound device, whatever this machine has.
const bool silent =
    g_setenv("GST_PLUGIN_FEATURE_RANK", "pulsesink:NONE,alsasink:NONE", TRUE) != FALSE;

class AccessibilityTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { shared_ = std::make_unique<GtkHost>(sampleCampaigns()); }
  static void TearDownTestSuite() { shared_.reset(); }
  static GtkHost& host() { return *shared_; }

  AccessibilityTest() {
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
    EXPECT_TRUE(ScreenKeys{host().window()}.work());
    EXPECT_TRUE(host().runUntil([] { return host().window().is_active(); }));
    host().column().prepend(before_);
    host().column().append(after_);
    handlers.clear();
  }
  ~AccessibilityTest() override {
    root()->dismissViewController(Animated::no);
    host().column().remove(before_);
    host().column().remove(after_);
    host().makeBanner();
    settleRuntime();
  }

  static std::shared_ptr<ViewController> root() {
    return gtk::rootViewControllerOf(host().window());
  }
  static const Platform& platform() { return Runtime::current().platform(); }

  // What the reader sees, a line a thing; it may do something first.
  static std::string seen(const std::string& act = {}) {
    struct Answer {
      GSubprocess* reader;
      std::string text{};
      bool ended = false;
    };
    const std::string number = std::to_string(getpid());
    Answer answer{g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr, TAVO_ACCESSIBLE_TREE,
                                   number.c_str(), act.empty() ? nullptr : act.c_str(), nullptr)};
    g_subprocess_communicate_utf8_async(
        answer.reader, nullptr, nullptr,
        [](GObject*, GAsyncResult* result, gpointer to) {
          auto& told = *static_cast<Answer*>(to);
          char* text = nullptr;
          g_subprocess_communicate_utf8_finish(told.reader, result, &text, nullptr, nullptr);
          if (text != nullptr) told.text = text;
          g_free(text);
          told.ended = true;
        },
        &answer);
    EXPECT_TRUE(host().runUntil([&] { return answer.ended; }));
    EXPECT_TRUE(act.empty() || g_subprocess_get_successful(answer.reader) != FALSE)
        << "nothing to do: " << act;
    g_object_unref(answer.reader);
    return answer.text;
  }
  static bool isSeen(const std::string& thing) {
    return host().runUntil([&] { return seen().find(thing) != std::string::npos; });
  }
  // The thing that has the keyboard.
  static std::string focused() {
    const std::string all = seen();
    const auto mark = all.find(" focused\n");
    if (mark == std::string::npos) return "nothing";
    const auto line = all.rfind('\n', mark);
    const auto start = all.find_first_not_of(' ', line == std::string::npos ? 0 : line + 1);
    return all.substr(start, mark - start);
  }
  static void type(unsigned key, unsigned held = 0) {
    ScreenKeys{host().window()}.press(key, held);
  }
  // Makes a banner of the campaign, and the keyboard come to it by the Tab key.
  void tabInto(const std::string& campaign, const std::string& thing) {
    host().makeBanner();
    host().column().reorder_child_after(after_, host().slot());
    host().load(campaign);
    ASSERT_TRUE(host().runUntil([] { return !host().calls().empty(); }));
    ASSERT_EQ(host().calls().back(), "didLoad");
    before_.grab_focus();
    ASSERT_TRUE(isSeen("push button \"Before\" focused")) << seen();
    type(GDK_KEY_Tab);
    ASSERT_TRUE(isSeen(thing + " focused")) << seen();
  }
  static bool isOpened(std::size_t count) {
    return host().runUntil([&] { return handlers.received().size() >= count; });
  }
  // What the Tab key comes by until it meets the same thing again.
  static std::vector<std::string> tabbed() {
    constexpr std::size_t many = 20;
    std::vector<std::string> met{focused()};
    while (met.size() < many) {
      type(GDK_KEY_Tab);
      std::string next;
      host().runUntil([&] { return (next = focused()) != met.back(); });
      if (next == met.front()) break;
      met.push_back(next);
    }
    return met;
  }

  // Of the host, around its slot.
  Gtk::Button before_{"Before"};
  Gtk::Button after_{"After"};

 private:
  static inline std::unique_ptr<GtkHost> shared_;
};

TEST_F(AccessibilityTest, APictureThatOpensSomethingIsALinkWhichKeysPress) {
  tabInto("image-banner", "link \"Open the advertisement\"");
  host().keepPicture("focused-picture");
  type(GDK_KEY_Return);
  EXPECT_TRUE(isOpened(1));
  type(GDK_KEY_space);
  EXPECT_TRUE(isOpened(2));
  type(GDK_KEY_Tab);
  EXPECT_TRUE(isSeen("push button \"After\" focused")) << seen();
}

struct SheetCase {
  const char* name;
  std::shared_ptr<ViewController> (*make)(Composers& sheets);
  std::vector<std::string> controls;  // in the order of the Tab key
};

TEST_F(AccessibilityTest, SheetsHaveANameAndTheKeyboardReachesEachOfTheirControls) {
  const SheetCase cases[] = {
      {"New Message",
       [](Composers& sheets) { return sheets.messageComposer({}, [](auto) {}); },
       {"text \"To\"", "text \"Message\"", "push button \"Cancel\"", "push button \"Send\""}},
      {"New Mail",
       [](Composers& sheets) { return sheets.mailComposer({}, [](auto) {}); },
       {"text \"To\"", "text \"Subject\"", "text \"Mail\"", "push button \"Cancel\"",
        "push button \"Send\""}},
      {"New Event",
       [](Composers& sheets) { return sheets.eventEditor({}, [](auto, const auto&) {}); },
       {"text \"Title\"", "text \"Location\"", "text \"Starts\"", "text \"Ends\"", "text \"Notes\"",
        "push button \"Delete\"", "push button \"Cancel\"", "push button \"Save\""}}};
  for (const auto& [name, make, controls] : cases) {
    SCOPED_TRACE(name);
    root()->presentViewController(make(*platform().composers), Animated::no);
    EXPECT_TRUE(isSeen("dialog \"" + std::string{name} + "\"")) << seen();
    EXPECT_TRUE(isSeen(controls.front() + " focused")) << seen();
    EXPECT_EQ(tabbed(), controls);
    seen("Cancel");
    EXPECT_TRUE(host().runUntil([] { return root()->presentedViewController() == nullptr; }));
  }
}

TEST_F(AccessibilityTest, TheBrowserNamesItsButtonsItsPageAndWhatCannotBePressed) {
  const auto events = std::make_shared<XInAppBrowserDelegate>();
  const auto browser = XInAppBrowser::create(Runtime::current().environment(), events);
  root()->presentViewController(browser, Animated::no);
  browser->setURL(Url::parse(host().server().baseUrl() + "/nowhere"));
  EXPECT_TRUE(isSeen("push button \"Reload\"")) << seen();
  EXPECT_TRUE(isSeen("tool bar")) << seen();
  for (const char* thing : {"push button \"Close\"", "push button \"Back\" off",
                            "push button \"Forward\" off", "label \"Not secure: 127.0.0.1"}) {
    EXPECT_TRUE(isSeen(thing)) << thing << '\n' << seen();
  }
  EXPECT_THAT(tabbed(), testing::IsSupersetOf({"push button \"Close\"", "push button \"Reload\""}));
  seen("Close");
  EXPECT_TRUE(host().runUntil([] { return root()->presentedViewController() == nullptr; }));
}

// Presents what it loads, and counts the ends.
struct FullScreen {
  explicit FullScreen(ViewController& root) {
    events_ = std::make_shared<XAdInterstitialViewControllerDelegate>(
        XAdInterstitialViewControllerDelegate{
            .xAdInterstitialDidLoad =
                [this, &root](XAdInterstitialViewController*) {
                  root.presentViewController(controller, Animated::no);
                },
            .xAdInterstitialDismissed = [this](XAdInterstitialViewController&) { ++dismissed; }});
    controller->delegate.set(events_);
  }
  void load(const std::string& server, const std::string& campaign) const {
    const std::string host = server.substr(std::string_view{"http://"}.size());
    controller->loadWithDomainName(host + "/ads", campaign, "Full");
  }

  std::shared_ptr<XAdInterstitialViewController> controller =
      XAdInterstitialViewController::create();
  int dismissed = 0;

 private:
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> events_;
};

TEST_F(AccessibilityTest, AnInterstitialIsADialogWhoseButtonTheKeyboardPresses) {
  const FullScreen ad{*root()};
  ad.load(host().server().baseUrl(), "interstitial-html");
  EXPECT_TRUE(isSeen("dialog \"Advertisement\"")) << seen();
  const std::string button = "push button \"Close Interstitial Ad\"";
  ASSERT_TRUE(isSeen(button)) << seen();
  const auto page = ad.controller->xadView()->webViewInstance();
  const auto enterPage = [&] {
    gtk_widget_grab_focus(dynamic_cast<gtk::NativeView&>(*page).widget());
    EXPECT_TRUE(isSeen("\"WebKitWebView\" focused")) << seen();
  };
  enterPage();
  type(GDK_KEY_F6);
  ASSERT_TRUE(isSeen(button + " focused")) << "whatever the page does";
  host().keepPicture("focused-close");
  type(GDK_KEY_Return);
  EXPECT_TRUE(host().runUntil([&] { return ad.dismissed == 1; }));
}

TEST_F(AccessibilityTest, AFilmSaysWhenItMayBeLeftAndThenHow) {
  const FullScreen ad{*root()};
  ad.load(host().server().baseUrl(), "interstitial-video");
  EXPECT_TRUE(isSeen("push button \"The ad can be left in 00:0")) << seen();
  EXPECT_TRUE(isSeen("push button \"Close\"")) << seen();
  seen("Close");
  EXPECT_TRUE(host().runUntil([&] { return ad.dismissed == 1; }));
}

TEST_F(AccessibilityTest, AFilmsControlsSayWhatTheyDoNow) {
  const auto player = platform().moviePlayers->create({0, 0, 320, 180});
  const auto slot = std::make_unique<gtk::MovieSlot>(player);
  host().column().append(*slot);
  ASSERT_TRUE(isSeen("push button \"Play\"")) << seen();
  EXPECT_TRUE(isSeen("slider \"Position\"")) << seen();
  EXPECT_TRUE(isSeen("push button \"Full screen\"")) << seen();
  player->setContentUrl(Url::parse(host().server().baseUrl() + "/assets/vast-preroll/clip.mp4"));
  seen("Play");
  EXPECT_TRUE(isSeen("push button \"Pause\"")) << seen();
  seen("Full screen");
  EXPECT_TRUE(isSeen("push button \"Leave full screen\"")) << seen();
  player->setFullscreen(false);
  player->stop();
  host().column().remove(*slot);
}

}  // namespace
}  // namespace tavo::test
