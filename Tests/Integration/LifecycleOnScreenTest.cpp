// What the window does to an ad: minimised, restored, hidden, turned, taken apart. The sample
// server's record tells what was asked for meanwhile.

#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WindowManager.h"

namespace tavo::test {
namespace {

using adserver::RequestKind;

GtkHost& host() {
  static GtkHost only{sampleCampaigns()};
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

  [[nodiscard]] static bool turnTo(int width, int height) {
    host().window().set_default_size(width, height);
    return host().runUntil([&] {
      return (host().window().get_width() > host().window().get_height()) == (width > height);
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

TEST_F(LifecycleOnScreenTest, ATurnedWindowIsToldToThePage) {
  host().load("html-banner");
  ASSERT_TRUE(loaded(1));
  // The page introduces itself, a moment after the ad was shown.
  ASSERT_TRUE(host().runUntil([] { return host().banner()->webViewInstance() != nullptr; }));
  const auto agent = host().banner()->webViewInstance();
  std::string size;
  const auto screenSize = [&](const std::string& wanted) {
    return host().runUntil([&] {
      agent->evaluate("var s = mraid.getScreenSize(); s.width > s.height ? 'wide' : 'tall'",
                      [&](const std::string& answer) { size = answer; });
      return size == wanted;
    });
  };
  EXPECT_TRUE(screenSize("tall"));
  ASSERT_TRUE(turnTo(900, 400));
  EXPECT_TRUE(screenSize("wide")) << size;
  ASSERT_TRUE(turnTo(360, 640));
  EXPECT_TRUE(screenSize("tall")) << size;
  EXPECT_EQ(host().recorded(RequestKind::Ad), 1U) << "turning is no reason to ask";
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
