// What the window does to an ad: minimised, restored, hidden, turned, taken apart. The sample
// server's record tells what was asked for meanwhile.

#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "Support/WindowManager.h"

namespace tavo::test {
namespace {

using adserver::RequestKind;

GtkHost& host() {
  // A restored window loads at once.
  static GtkHost only{sampleCampaigns(), {}, {}, {.automaticRequestDistance = Seconds{0}}};
  return only;
}

// What the toolkit says about widgets that were taken apart wrongly.
int complaints = 0;

GLogWriterOutput countComplaints(GLogLevelFlags level, const GLogField* fields, gsize count,
                                 gpointer /*data*/) {
  if ((level & (G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) != 0) ++complaints;
  return g_log_writer_default(level, fields, count, nullptr);
}

class LifecycleOnScreenTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { g_log_set_writer_func(countComplaints, nullptr, nullptr); }

  LifecycleOnScreenTest() {
    host().makeBanner();
    host().server().record().clear();
    *host().settings = {};
  }

  [[nodiscard]] bool loaded(std::size_t times) const {
    return host().runUntil([&] {
      const auto& all = host().calls();
      return std::count(all.begin(), all.end(), "didLoad") == static_cast<std::ptrdiff_t>(times);
    });
  }
};

TEST_F(LifecycleOnScreenTest, AMinimisedWindowLetsGoAndARestoredOneLoadsAnew) {
  for (const char* campaign : {"image-banner", "html-banner"}) {
    SCOPED_TRACE(campaign);
    host().makeBanner();
    host().server().record().clear();
    host().settings->bannerRefreshInterval = 600;
    host().load(campaign);
    ASSERT_TRUE(loaded(1));
    // With the ad, or with its window where that is slower.
    EXPECT_TRUE(host().runUntil([] { return host().banner()->isRefreshTimerRunning(); }));

    setMinimised(host().window(), true);
    EXPECT_TRUE(host().runUntil([] { return host().banner()->subviews().empty(); }));
    EXPECT_FALSE(host().banner()->isRefreshTimerRunning());
    EXPECT_EQ(host().recorded(RequestKind::Ad), 1U);

    setMinimised(host().window(), false);
    EXPECT_TRUE(loaded(2));
    EXPECT_TRUE(host().runUntil([] { return host().banner()->isRefreshTimerRunning(); }));
    EXPECT_EQ(host().recorded(RequestKind::Ad), 2U) << "no more than one for coming back";
    EXPECT_TRUE(host().runUntil([] { return host().recorded(RequestKind::Tracking) == 2; }));
  }
}

// Each time that the engine's widget leaves its window the host loses some tens of kilobytes.
TEST_F(LifecycleOnScreenTest, PagesOfASlotStayInItsWindow) {
  const auto show = [](const char* campaign) {
    const auto impressions = host().recorded(RequestKind::Tracking);
    host().load(campaign);
    return host().runUntil([&] { return host().recorded(RequestKind::Tracking) > impressions; });
  };
  ASSERT_TRUE(show("html-banner"));
  const auto pages = [](bool onlySeen) {
    return widgetsBelow<Gtk::Widget>(host().slot(), [&](Gtk::Widget& widget) {
      return std::string_view{G_OBJECT_TYPE_NAME(widget.gobj())} == "WebKitWebView" &&
             (!onlySeen || widget.get_mapped());
    });
  };
  ASSERT_TRUE(host().runUntil([&] { return pages(true).size() == 1; }));
  int left = 0;
  sigc::connection connection = pages(true).front()->signal_unrealize().connect([&] { ++left; });
  for (const char* campaign : {"html-banner", "image-banner", "html-banner", "html-banner"}) {
    ASSERT_TRUE(show(campaign));
  }
  EXPECT_TRUE(host().runUntil([&] { return pages(true).size() == 1; }));
  EXPECT_EQ(left, 0);
  EXPECT_LE(pages(false).size(), 2U);
  connection.disconnect();
}

// The creative's script turns its button yellow.
bool isYellow(const Color& color) {
  return color.red > 0.9F && color.green > 0.7F && color.blue < 0.4F;
}

TEST_F(LifecycleOnScreenTest, APageIsSeenWheneverItsWindowIsRestored) {
  const auto isSeen = [] { return isYellow(host().pixelInSlot(270, 14)); };
  host().load("html-banner");
  ASSERT_TRUE(host().runUntil(isSeen));
  for (int round = 0; round < 4; ++round) {
    SCOPED_TRACE(round);
    setMinimised(host().window(), true);
    ASSERT_TRUE(host().runUntil([] { return host().banner()->subviews().empty(); }));
    setMinimised(host().window(), false);
    ASSERT_TRUE(host().runUntil(isSeen));
  }
}

TEST_F(LifecycleOnScreenTest, APageThatMovesToAnotherWindowIsSeenThere) {
  host().load("html-banner");
  ASSERT_TRUE(host().runUntil([] { return isYellow(host().pixelInSlot(270, 14)); }));
  Gtk::Window other;
  other.set_default_size(320, 50);
  for (const bool back : {false, true}) {
    SCOPED_TRACE(back);
    host().slot().reference();
    if (back) {
      other.unset_child();
      host().column().append(host().slot());
    } else {
      host().column().remove(host().slot());
      other.set_child(host().slot());
      other.present();
    }
    host().slot().unreference();
    EXPECT_TRUE(host().runUntil([&] {
      return isYellow(back ? host().pixelInSlot(270, 14)
                           : adplayer::Screenshot{other}.pixel(270, 14));
    }));
  }
  EXPECT_EQ(host().recorded(RequestKind::Ad), 1U);
}

TEST_F(LifecycleOnScreenTest, ASlotThatItsWindowOwnsGoesWithoutAWord) {
  const auto banner = XAdView::create({0, 0, 320, 50});
  auto window = std::make_unique<Gtk::Window>();
  window->set_child(*Gtk::make_managed<gtk::AdSlot>(banner));
  window->present();
  EXPECT_TRUE(host().runUntil([&] { return banner->window() != nullptr; }));
  const int before = complaints;
  window.reset();
  EXPECT_TRUE(host().runUntil([&] { return banner->window() == nullptr; }));
  EXPECT_EQ(complaints, before);
}

}  // namespace
}  // namespace tavo::test
