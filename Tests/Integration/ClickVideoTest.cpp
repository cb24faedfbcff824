// The video that a creative asks for, over a real window. With TAVO_TEST_PICTURES set to a folder,
// it leaves a picture of itself there.

#include "Gtk/Services/GtkApplication.h"
#include "Scene/Window.h"
#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "UserInterface/Movie/MovieViewController.h"

namespace tavo::test {
namespace {

class ClickVideoOnScreen : public testing::Test {
 protected:
  static void SetUpTestSuite() { shared_ = std::make_unique<GtkHost>(sampleCampaigns()); }
  static void TearDownTestSuite() { shared_.reset(); }
  static GtkHost& host() { return *shared_; }

  ClickVideoOnScreen() {
    host().runUntil([] { return host().window().get_mapped() && host().window().get_width() > 0; });
  }
  ~ClickVideoOnScreen() override { pressKey(host().window(), GDK_KEY_Escape); }

  // The video on the screen; null when there is none.
  static std::shared_ptr<MovieViewController> shown() {
    auto* root = host().banner()->getRootViewController();
    auto* movie = dynamic_cast<MovieViewController*>(root->presentedViewController());
    if (movie == nullptr) return nullptr;
    return std::static_pointer_cast<MovieViewController>(movie->shared_from_this());
  }
  static void play(const std::string& asset) {
    host().banner()->handlePlayVideoWithURL(
        Url::fromText(host().server().baseUrl() + "/assets/" + asset));
  }
  static bool waitForPosition(double seconds) {
    return host().runUntil([seconds] {
      const auto movie = shown();
      return movie && movie->player()->currentPlaybackTime() >= seconds;
    });
  }
  // Whether the second of the clip's seven bars stands in the middle of the window.
  static bool waitForPicture() {
    return host().runUntil([] {
      const int x = host().window().get_width() * 3 / 14;
      const int y = host().window().get_height() / 2;
      const Color pixel = adplayer::Screenshot{host().window()}.pixel(x, y);
      return std::abs(pixel.red - 1) < 0.1F && std::abs(pixel.green - 1) < 0.1F &&
             pixel.blue < 0.15F;
    });
  }

 private:
  static inline std::unique_ptr<GtkHost> shared_;
};

TEST_F(ClickVideoOnScreen, PlaysOverTheWindowAndGoesAtItsEnd) {
  play("vast-preroll/clip.mp4");
  ASSERT_TRUE(waitForPosition(1));
  EXPECT_TRUE(waitForPicture());
  host().keepPicture("click-video");
  const std::weak_ptr<MovieViewController> movie = shown();
  EXPECT_TRUE(host().runUntil([&] { return movie.expired(); }));
}

TEST_F(ClickVideoOnScreen, EscapeAndItsButtonCloseIt) {
  play("vast-preroll/clip.mp4");
  ASSERT_TRUE(waitForPicture());
  EXPECT_TRUE(pressKey(host().window(), GDK_KEY_Escape));
  EXPECT_EQ(shown(), nullptr);

  play("vast-preroll/clip.mp4");
  ASSERT_TRUE(waitForPicture());
  const auto close = [] {
    const auto buttons = widgetsBelow<Gtk::Button>(host().window(), [](Gtk::Button& button) {
      double x = 0;
      double y = 0;
      return button.translate_coordinates(host().window(), 0, 0, x, y) && y < 50;
    });
    return buttons.size() == 1 ? buttons.front() : nullptr;
  };
  ASSERT_NE(close(), nullptr);
  g_signal_emit_by_name(close()->gobj(), "clicked");
  EXPECT_EQ(shown(), nullptr);
}

TEST_F(ClickVideoOnScreen, WhatIsNoVideoGoesAway) {
  for (const char* asset : {"image-banner/banner.png", "no-campaign/nothing.mp4"}) {
    play(asset);
    ASSERT_NE(shown(), nullptr) << asset;
    EXPECT_TRUE(host().runUntil([] { return shown() == nullptr; })) << asset;
  }
}

}  // namespace
}  // namespace tavo::test
