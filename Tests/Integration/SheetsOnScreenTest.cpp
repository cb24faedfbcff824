// Sheets, alerts and the in-app browser in a real window.

#include <map>

#include <tavo/XGlobalConfiguration.h>

#include "Gtk/Scene/NativeView.h"
#include "Gtk/Services/GtkApplication.h"
#include "Gtk/Sheets/GtkAlerts.h"
#include "Scene/Window.h"
#include "Services/Alerts.h"
#include "Services/Composers.h"
#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/ScreenPointer.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "UserInterface/WebView/InAppBrowser/XInAppBrowser.h"

namespace tavo::test {
namespace {

using namespace std::chrono_literals;

StandInHandlers handlers;  // before GLib reads where the user's folders are

// What the toolkit complains of while this lives.
struct ToolkitComplaints {
  ToolkitComplaints() { before = g_log_set_default_handler(note, this); }
  ~ToolkitComplaints() { g_log_set_default_handler(before, nullptr); }
  ToolkitComplaints(const ToolkitComplaints&) = delete;
  ToolkitComplaints& operator=(const ToolkitComplaints&) = delete;

  static void note(const char*, GLogLevelFlags level, const char* text, gpointer self) {
    const bool bad = (level & (G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) != 0;
    if (bad) static_cast<ToolkitComplaints*>(self)->texts.emplace_back(text);
  }

  std::vector<std::string> texts;
  GLogFunc before = nullptr;
};

class SheetsOnScreen : public testing::Test {
 protected:
  static void SetUpTestSuite() { shared_ = std::make_unique<GtkHost>(sampleCampaigns()); }
  static void TearDownTestSuite() { shared_.reset(); }
  static GtkHost& host() { return *shared_; }

  SheetsOnScreen() {
    handlers.clear();
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
    auto& application = dynamic_cast<gtk::GtkApplication&>(*platform().application);
    root_ = application.sceneOf(host().window())->window()->rootViewController();
  }
  ~SheetsOnScreen() override {
    if (root_->presentedViewController() != nullptr) root_->dismissViewController(Animated::no);
    settleRuntime();
  }

  static const Platform& platform() { return Runtime::current().platform(); }
  void present(const std::shared_ptr<ViewController>& sheet) const {
    root_->presentViewController(sheet, Animated::yes);
    host().runUntil([] { return widgetOf<Gtk::Button>() != nullptr; });
    host().waitForFrames();
  }
  template <typename Widget>
  [[nodiscard]] static Widget* widgetOf(std::size_t number = 0) {
    const auto all =
        widgetsBelow<Widget>(host().window(), [](Widget& widget) { return widget.get_mapped(); });
    return number < all.size() ? all[number] : nullptr;
  }
  static std::vector<std::string> received(std::size_t count) {
    host().runUntil([count] { return handlers.received().size() >= count; });
    return handlers.received();
  }

  std::shared_ptr<ViewController> root_;

 private:
  static inline std::unique_ptr<GtkHost> shared_;
};

TEST_F(SheetsOnScreen, AMessageIsLookedOverAndHandedOn) {
  std::optional<MessageComposeResult> result;
  const auto compose = [&] {
    result.reset();
    present(platform().composers->messageComposer(
        {.recipients = {"123", "456\n7"}, .body = "Hi there,\nsee you & \"me\" at 8?"},
        [&](MessageComposeResult what) {
          result = what;
          root_->dismissViewController(Animated::yes);
        }));
  };
  EXPECT_TRUE(platform().composers->canSendText());
  compose();
  ASSERT_NE(widgetOf<Gtk::Entry>(), nullptr);
  EXPECT_EQ(widgetOf<Gtk::Entry>()->get_text(), "123, 456 7");
  EXPECT_FALSE(host().column().get_can_focus()) << "the keyboard stays in the sheet";
  host().keepPicture("message");
  ASSERT_TRUE(pressButton(host().window(), "Send"));
  EXPECT_EQ(result, MessageComposeResult::sent);
  EXPECT_THAT(received(1),
              ElementsAre("sms:123,456%207?body=Hi%20there%2C%0Asee%20you%20%26%20%22me%22%20at%208"
                          "%3F"));
  EXPECT_TRUE(host().runUntil([] { return widgetOf<Gtk::Entry>() == nullptr; }));
  EXPECT_TRUE(host().runUntil([] { return host().column().get_can_focus(); }));

  compose();
  ASSERT_TRUE(pressButton(host().window(), "Cancel"));
  EXPECT_EQ(result, MessageComposeResult::cancelled);
  compose();
  EXPECT_TRUE(pressKey(host().window(), GDK_KEY_Escape));
  EXPECT_EQ(result, MessageComposeResult::cancelled);
  EXPECT_FALSE(pressKey(host().window(), GDK_KEY_Escape)) << "nothing is left to leave";
  EXPECT_EQ(handlers.received().size(), 1U);
}

TEST_F(SheetsOnScreen, AMailIsLookedOverChangedAndHandedOn) {
  std::optional<MailComposeResult> result;
  present(platform().composers->mailComposer(
      {.recipients = {"a@b.example?bcc=evil@c.example"}, .subject = "S%20T", .body = "B"},
      [&](MailComposeResult what) {
        result = what;
        root_->dismissViewController(Animated::yes);
      }));
  host().keepPicture("mail");
  ASSERT_NE(widgetOf<Gtk::TextView>(), nullptr);
  widgetOf<Gtk::TextView>()->get_buffer()->set_text("Changed");
  ASSERT_TRUE(pressButton(host().window(), "Send"));
  EXPECT_EQ(result, MailComposeResult::sent);
  EXPECT_THAT(received(1), ElementsAre("mailto:a@b.example%3Fbcc%3Devil@c.example?subject="
                                       "S%2520T&body=Changed"));
}

TEST_F(SheetsOnScreen, AnEventIsLookedOverAndReported) {
  const Date start{std::chrono::seconds{1'795'255'200}};
  const CalendarEvent event{"Opening night", "Doors open at nine", "Hall 1",
                            start,           start + 90min,        CalendarAlarm{Seconds{-600}}};
  std::optional<EventEditAction> result;
  CalendarEvent edited;
  const auto edit = [&] {
    result.reset();
    present(platform().composers->eventEditor(
        event, [&](EventEditAction action, const CalendarEvent& changed) {
          result = action;
          edited = changed;
          root_->dismissViewController(Animated::yes);
        }));
  };
  edit();
  host().keepPicture("event");
  ASSERT_NE(widgetOf<Gtk::Entry>(3), nullptr);
  widgetOf<Gtk::Entry>(0)->set_text("Another title");
  widgetOf<Gtk::Entry>(3)->set_text("no time");
  ASSERT_TRUE(pressButton(host().window(), "Save"));
  EXPECT_EQ(result, EventEditAction::saved);
  CalendarEvent expected = event;
  expected.title = "Another title";
  EXPECT_EQ(edited, expected) << "a time that cannot be read stays";
  for (const auto& [button, action] : std::map<std::string, EventEditAction>{
           {"Delete", EventEditAction::deleted}, {"Cancel", EventEditAction::cancelled}}) {
    settleRuntime();
    edit();
    ASSERT_TRUE(pressButton(host().window(), button));
    EXPECT_EQ(result, action);
  }
}

TEST_F(SheetsOnScreen, ASheetThatNobodyWaitsForStillCloses) {
  auto& sheets = *platform().composers;
  const auto page = Url::parse("about:blank");
  const std::pair<std::shared_ptr<ViewController>, const char*> rows[] = {
      {sheets.messageComposer({}, [](auto) {}), "Cancel"},
      {sheets.mailComposer({}, [](auto) {}), "Cancel"},
      {sheets.eventEditor({}, [](auto, const auto&) {}), "Save"},
      {sheets.storeSheet({.identifier = 1, .page = page}, [] {}), "Done"}};
  for (const auto& [sheet, button] : rows) {
    SCOPED_TRACE(button);
    present(sheet);
    EXPECT_TRUE(pressButton(host().window(), button));
    EXPECT_EQ(root_->presentedViewController(), nullptr);
    root_->dismissViewController(Animated::no);
    settleRuntime();
    present(sheet);
    EXPECT_TRUE(pressKey(host().window(), GDK_KEY_Escape));
    EXPECT_EQ(root_->presentedViewController(), nullptr);
    root_->dismissViewController(Animated::no);
    settleRuntime();
    EXPECT_TRUE(sheet->cancelOperation()) << "nor does it hurt where it never was";
  }
}

TEST_F(SheetsOnScreen, AMillionCharactersDoNotHoldTheHostUp) {
  const std::string longText(1'000'000, 'x');
  present(platform().composers->messageComposer(
      {.recipients = {longText, longText}, .body = longText}, [](MessageComposeResult) {}));
  ASSERT_NE(widgetOf<Gtk::Entry>(), nullptr);
  EXPECT_EQ(widgetOf<Gtk::Entry>()->get_text_length(), 2'000);
}

Gtk::Window* alertWindow() {
  for (auto* window : Gtk::Window::list_toplevels()) {
    if (GTK_IS_MESSAGE_DIALOG(window->gobj()) && window->get_mapped()) return window;
  }
  return nullptr;
}

TEST_F(SheetsOnScreen, AnAlertIsAnsweredOnceAndClosingItMeansNo) {
  const ToolkitComplaints complaints;
  const Alert alert{.title = "", .message = "Sure?", .buttons = {"No", "Yes"}, .cancelButton = 0};
  std::vector<std::size_t> answers;
  const auto note = [&](std::size_t button) { answers.push_back(button); };
  const auto ask = [&] {
    platform().alerts->show(alert, note);
    host().runUntil([] { return alertWindow() != nullptr; });
  };
  ask();
  ASSERT_NE(alertWindow(), nullptr);
  EXPECT_TRUE(pressButton(*alertWindow(), "Yes")) << "before its first frame";
  host().waitForFrames();
  ask();
  for (const char* title : {"Sure?", "No", "Yes"}) {
    const auto isTitle = [title](Gtk::Label& label) { return label.get_text().raw() == title; };
    EXPECT_EQ(widgetsBelow<Gtk::Label>(*alertWindow(), isTitle).size(), 1U) << title;
  }
  host().runUntil([] { return adplayer::Screenshot{*alertWindow()}.isValid(); });
  host().keepPicture(*alertWindow(), "consent");
  alertWindow()->close();
  host().runUntil([&] { return answers.size() == 2; });
  ask();
  g_signal_emit_by_name(alertWindow()->gobj(), "close");  // what the Escape key does
  host().runUntil([&] { return answers.size() == 3; });
  const auto windowless =
      std::make_shared<gtk::GtkApplication>(platform().notifications, Limits{}.widgetSide);
  gtk::GtkAlerts{platform().runLoop, windowless}.show(alert, note);
  EXPECT_THAT(answers, SizeIs(3)) << "never inside the call";
  settleRuntime();
  EXPECT_THAT(answers, ElementsAre(1U, 0U, 0U, 0U));
  EXPECT_EQ(alertWindow(), nullptr);
  EXPECT_THAT(complaints.texts, IsEmpty());
}

constexpr const char* page =
    "<!doctype html><title>Landing page</title><body style='margin:0;background:#2e7d32;"
    "color:#fff;font:24px sans-serif'><p style='padding:20px'>Landing page";

TEST_F(SheetsOnScreen, ABannersClickOpensTheBrowserAtEitherEdge) {
  HostileServer server;
  server.on("/", PlainAnswer{.body = page, .contentType = "text/html"});
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  auto& settings = *XGlobalConfiguration::sharedInstance().browserConfiguration;
  settings.hideToolbarButton(4, false);
  for (const unsigned position : {0U, 1U}) {
    settings.toolbarPosition = position;
    host().banner()->openUrlInBrowser(Url::parse(server.url("/")));
    ASSERT_TRUE(host().runUntil([this] { return root_->presentedViewController() != nullptr; }));
    auto* browser = dynamic_cast<XInAppBrowser*>(root_->presentedViewController());
    ASSERT_NE(browser, nullptr);
    ASSERT_TRUE(
        host().runUntil([&] { return browser->view()->accessibilityLabel() == "Landing page"; }));
    const int height = host().window().get_height();
    const auto pixel = [&](int y) { return adplayer::Screenshot{host().window()}.pixel(180, y); };
    const auto isGreen = [](const Color& color) { return color.green > color.red + 0.2F; };
    EXPECT_TRUE(host().runUntil([&] { return isGreen(pixel(height / 2)); }));
    EXPECT_EQ(isGreen(pixel(8)), position == 1);
    double end = 0;
    for (auto* button : widgetsBelow<Gtk::Button>(host().window())) {
      double x = 0;
      double y = 0;
      ASSERT_TRUE(button->translate_coordinates(host().window(), 0, 0, x, y));
      EXPECT_GE(x, end) << "buttons on top of each other";
      end = x + button->get_width();
    }
    EXPECT_EQ(isGreen(pixel(height - 8)), position == 0);
    host().keepPicture(position == 0 ? "browser-top" : "browser-bottom");
    EXPECT_TRUE(pressKey(host().window(), GDK_KEY_Escape));
    EXPECT_FALSE(host().banner()->appBrowserOpen());
    settleRuntime();
  }
}

// A page that the person asked for, above the host's window, and a mouse for it.
class LandingPage : public SheetsOnScreen {
 protected:
  // Blocks of 60 points, one below the other, from the window's top.
  void open(const std::string& blocks) {
    server_.on("/",
               PlainAnswer{.body = "<!doctype html><title>Landing</title><style>*{margin:0}a,p{"
                                   "display:block;height:60px}</style><body>" +
                                   blocks,
                           .contentType = "text/html"});
    server_.on("/new", PlainAnswer{.body = "<title>New</title>new", .contentType = "text/html"});
    server_.on("/file", PlainAnswer{.body = "PK", .contentType = "application/zip"});
    XGlobalConfiguration::sharedInstance().browserConfiguration->toolbarPosition = 1;
    browser_ = XInAppBrowser::create(Runtime::current().environment(), events_);
    root_->presentViewController(browser_, Animated::no);
    browser_->setURL(Url::parse(server_.url("/")));
    EXPECT_TRUE(isNamed("Landing"));
    host().waitForFrames();
  }
  bool isNamed(const std::string& title) const {
    return host().runUntil([&] { return browser_->view()->accessibilityLabel() == title; });
  }
  // Clicks into a block until that has led somewhere: the window may take a while to be under the
  // pointer.
  bool clickUntil(int block, const std::function<bool()>& done) {
    int step = 0;
    auto* widget = dynamic_cast<gtk::NativeView&>(*browser_->webView()).widget();
    return host().runUntil([&] {
      if (done()) return true;
      auto* native = gtk_widget_get_native(widget);
      graphene_point_t onWindow;
      const graphene_point_t onPage{static_cast<float>(100 + ++step % 20),
                                    static_cast<float>(block * 60 + 30)};
      double left = 0;
      double top = 0;
      gtk_native_get_surface_transform(native, &left, &top);
      if (!gtk_widget_compute_point(widget, GTK_WIDGET(native), &onPage, &onWindow)) return false;
      pointer_.moveTo(static_cast<int>(onWindow.x + left), static_cast<int>(onWindow.y + top));
      host().waitForFrames(host().window(), 1);
      if (step % 10 == 0) {
        pointer_.press();
        pointer_.release();
      }
      return done();
    });
  }
  ScreenPointer pointer_;
  HostileServer server_;
  std::vector<std::string> lines_;
  const std::shared_ptr<const XInAppBrowserDelegate> events_ =
      std::make_shared<XInAppBrowserDelegate>(XInAppBrowserDelegate{
          .XInAppBrowserWillLeaveApplication =
              [this](XInAppBrowser&) { lines_.emplace_back("willLeave"); },
          .XInAppBrowserDidFailLoadWithError =
              [this](XInAppBrowser&, const Error&) { lines_.emplace_back("didFail"); }});
  std::shared_ptr<XInAppBrowser> browser_;
};

TEST_F(LandingPage, OpensNewWindowsInItsPlace) {
  if (!pointer_.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  open("<p onclick=\"window.open('/new')\">open<script>window.open('/unasked')</script>");
  EXPECT_TRUE(clickUntil(0, [this] { return browser_->view()->accessibilityLabel() == "New"; }));
  for (const auto& request : server_.requests()) EXPECT_THAT(request, Not(HasSubstr("/unasked")));
}

TEST_F(LandingPage, AsksThePerson) {
  if (!pointer_.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  open("<p onclick=\"location.href = confirm('Sure?') ? '/new' : '/no'\">ask");
  ASSERT_TRUE(clickUntil(0, [] { return alertWindow() != nullptr; }));
  host().keepPicture(*alertWindow(), "confirm");
  // Longer than a page that is silent for another reason would be left alive.
  bool waited = false;
  const Timer patience = platform().runLoop->after(platform().limits.webProcessPing + Seconds{4},
                                                   [&] { waited = true; });
  host().runUntil([&] { return waited; });
  ASSERT_NE(alertWindow(), nullptr);
  gtk_dialog_response(GTK_DIALOG(alertWindow()->gobj()), GTK_RESPONSE_OK);
  EXPECT_TRUE(isNamed("New"));
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(LandingPage, HandsMailsToTheSystemAndTellsOfFiles) {
  if (!pointer_.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  open("<a href='mailto:a@b.example'>mail</a><a href='/file'>file</a>");
  EXPECT_TRUE(clickUntil(0, [] { return !handlers.received().empty(); }));
  EXPECT_EQ(handlers.received().front(), "mailto:a@b.example");
  EXPECT_EQ(lines_.front(), "willLeave");
  EXPECT_TRUE(clickUntil(1, [] { return alertWindow() != nullptr; }));
  host().keepPicture("landing-page");
  ASSERT_TRUE(pressButton(*alertWindow(), "Close"));
  EXPECT_EQ(browser_->view()->accessibilityLabel(), "Landing") << "the page stays";
}

TEST_F(SheetsOnScreen, APageThatCannotBeLoadedIsExplained) {
  const auto browser = XInAppBrowser::create(Runtime::current().environment(), nullptr);
  root_->presentViewController(browser, Animated::no);
  HostileServer server;
  server.on("/", CloseBeforeAnswer{});
  browser->setURL(Url::parse(server.url("/")));
  EXPECT_TRUE(
      host().runUntil([&] { return browser->view()->accessibilityLabel() == "Page not shown"; }));
  host().waitForFrames();
  host().keepPicture("browser-error");
}

TEST_F(SheetsOnScreen, TheStoreIsAPageThatCanBeLeft) {
  HostileServer server;
  server.on("/id42", PlainAnswer{.body = page, .contentType = "text/html"});
  int finished = 0;
  present(platform().composers->storeSheet(
      {.identifier = 42, .page = Url::parse(server.url("/id42"))}, [&] {
        ++finished;
        root_->dismissViewController(Animated::yes);
      }));
  EXPECT_TRUE(host().runUntil([] {
    return adplayer::Screenshot{host().window()}.pixel(180, 300).green > 0.4F &&
           adplayer::Screenshot{host().window()}.pixel(180, 300).red < 0.3F;
  }));
  host().keepPicture("store");
  EXPECT_TRUE(pressButton(host().window(), "Done"));
  EXPECT_EQ(finished, 1);
}

}  // namespace
}  // namespace tavo::test
