// Interstitials above a real window of a host: what a person sees, and every way back to the host.

#include <cstdlib>
#include <utility>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/gtk/AdWindow.h>

#include "Runtime/NotificationCenter.h"
#include "Scene/Window.h"
#include "Services/Application.h"
#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"
#include "Support/WebProcesses.h"
#include "Support/WidgetTree.h"
#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo::test {
namespace {

using adserver::RequestKind;
using Controller = XAdInterstitialViewController;

constexpr const char* closeName = "Close Interstitial Ad";
constexpr Color hostsOwn{0, 0.6F, 0.2F, 1};
constexpr Color page{0x16 / 255.0F, 0x32 / 255.0F, 0x4f / 255.0F, 1};
constexpr Color mraidPage{0x5b / 255.0F, 0x2a / 255.0F, 0x4e / 255.0F, 1};
constexpr Color ownControl{1, 0xd9 / 255.0F, 0xa0 / 255.0F, 1};
constexpr Color poster{0x0d / 255.0F, 0x5c / 255.0F, 0x63 / 255.0F, 1};
constexpr Color posterCorner{0x11 / 255.0F, 0x8a / 255.0F, 0xb2 / 255.0F, 1};

StandInHandlers handlers;  // before GLib reads where the user's folders are

GtkHost& host() {
  static GtkHost only{sampleCampaigns()};
  return only;
}

int width() { return host().window().get_width(); }
int height() { return host().window().get_height(); }

// A host with a green page and a button that has the keyboard.
class InterstitialOnScreenTest : public testing::Test {
 protected:
  InterstitialOnScreenTest() {
    const auto style = Gtk::CssProvider::create();
    style->load_from_data("* { background: #009933; }");
    green_.get_style_context()->add_provider(style, GTK_STYLE_PROVIDER_PRIORITY_USER);
    green_.set_expand(true);
    column_.append(green_);
    column_.append(button_);
    reshape(360, 640);
    EXPECT_TRUE(button_.grab_focus());
    EXPECT_TRUE(showsHost());
    host().server().record().clear();
    listen();
  }
  ~InterstitialOnScreenTest() override {
    gtk::rootViewControllerOf(host().window())->dismissViewController(Animated::no);
    controller_.reset();
    column_.remove(green_);
    column_.remove(button_);
  }

  void listen() {
    const auto line = [this](const char* name) {
      return [this, name](Controller&) { told_.emplace_back(name); };
    };
    events_ = std::make_shared<XAdInterstitialViewControllerDelegate>(
        XAdInterstitialViewControllerDelegate{
            .xAdInterstitialDidLoad =
                [this](Controller*) {
                  told_.emplace_back("didLoad");
                  present();
                },
            .xAdInterstitialDidFailWithError =
                [this](Controller&, const std::optional<Error>& error) {
                  told_.push_back("didFail " + std::to_string(error ? error->code : 0));
                  wasOnScreenAtFailure_ = controller_->presentingViewController() != nullptr;
                },
            .xAdInterstitialDismissed = line("dismissed")});
    controller_ = Controller::create();
    controller_->slotConfiguration = settings_;
    controller_->delegate.set(events_);
  }

  void present() {
    gtk::rootViewControllerOf(host().window())->presentViewController(controller_, Animated::yes);
  }

  void load(const std::string& campaign) {
    const std::string server = host().server().baseUrl();
    controller_->loadWithDomainName(server.substr(std::string_view{"http://"}.size()) + "/ads",
                                    campaign, "Full");
  }
  [[nodiscard]] bool show(const std::string& campaign) {
    load(campaign);
    return host().runUntil([this] { return told_ == Lines{"didLoad"}; });
  }

  static void reshape(int newWidth, int newHeight) {
    host().window().set_default_size(newWidth, newHeight);
    EXPECT_TRUE(host().runUntil([&] { return width() == newWidth && height() == newHeight; }));
  }

  static bool showsPixel(int x, int y, const Color& color) {
    return host().waitForPixelInWindow(x, y, color);
  }
  [[nodiscard]] MoviePlayer& movie() {
    const auto& view = controller_->xadView()->subviews().front();
    return *std::dynamic_pointer_cast<XVASTVideoView>(view)
                ->mpMoviePlayer()
                ->moviePlayerController();
  }
  // The second of the clip's seven bars, which was compressed and is only almost yellow.
  static bool showsYellowBar() {
    return host().runUntil([] {
      const Color pixel = adplayer::Screenshot{host().window()}.pixel(width() * 3 / 14, 150);
      return pixel.red > 0.9F && pixel.green > 0.9F && pixel.blue < 0.15F;
    });
  }
  // The host's content is back, and takes input as before.
  [[nodiscard]] bool showsHost() {
    return showsPixel(width() / 2, height() / 2, hostsOwn) &&
           host().runUntil([this] { return host().window().get_focus() == &button_; });
  }
  static std::string nameInCorner() { return buttonNameAt(host().window(), width() - 20, 28); }
  static bool waitForCorner(const std::string& name) {
    return host().runUntil([&] { return nameInCorner() == name; });
  }
  static bool pressCorner() { return pressButtonAt(host().window(), width() - 20, 28); }
  static bool pressEscape() { return pressKey(host().window(), GDK_KEY_Escape); }

  std::string evaluate(const std::string& script) {
    return askPage(controller_->xadView()->webViewInstance().get(), script);
  }
  bool becomes(const std::string& script, const std::string& expected) {
    return host().runUntil([&] { return evaluate(script) == expected; });
  }

  Gtk::Box& column_ = host().column();  // first: it sets the toolkit up
  Gtk::Box green_;
  Gtk::Button button_{"Host"};
  std::shared_ptr<XAdSlotConfiguration> settings_ = std::make_shared<XAdSlotConfiguration>();
  Lines told_;
  bool wasOnScreenAtFailure_ = false;
  std::shared_ptr<Controller> controller_;
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> events_;
};

TEST_F(InterstitialOnScreenTest, ItsPageHasAProcessOfItsOwn) {
  host().makeBanner();
  host().load("html-banner");
  ASSERT_TRUE(host().runUntil(
      [] { return !host().calls().empty() && host().calls().back() == "didLoad"; }));
  const auto before = webProcesses();
  ASSERT_TRUE(show("interstitial-html"));
  const auto after = webProcesses();
  EXPECT_FALSE(std::includes(before.begin(), before.end(), after.begin(), after.end()));
}

TEST_F(InterstitialOnScreenTest, APageCoversTheHostUntilItsButtonIsPressed) {
  ASSERT_TRUE(show("interstitial-html"));
  EXPECT_TRUE(showsPixel(10, 10, page));
  EXPECT_TRUE(showsPixel(width() - 10, height() - 10, page)) << "over the host's button, too";
  host().keepPicture("page");
  EXPECT_EQ(nameInCorner(), closeName);
  EXPECT_FALSE(button_.grab_focus()) << "the keyboard stays with the ad";
  EXPECT_FALSE(button_.has_focus());
  EXPECT_EQ(buttonNameAt(host().window(), width() / 2.0, height() - 10), "no button");
  EXPECT_TRUE(host().runUntil([] { return host().recorded(RequestKind::Tracking) == 1; }));
  ASSERT_TRUE(pressCorner());
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
}

TEST_F(InterstitialOnScreenTest, ThePageClosesItselfAndTheNextOneComes) {
  for (int round = 0; round < 2; ++round) {
    told_.clear();
    ASSERT_TRUE(show("interstitial-html"));
    EXPECT_TRUE(showsPixel(10, 10, page));
    evaluate("document.getElementById('close').click()");
    EXPECT_TRUE(showsHost());
    EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
  }
}

// Its creative allows landscape only.
TEST_F(InterstitialOnScreenTest, ACreativeOfOneOrientationKeepsItInEveryShapeOfTheWindow) {
  ASSERT_TRUE(show("interstitial-mraid"));
  EXPECT_TRUE(becomes("mraid.isViewable()", "true"));
  const std::string size =
      "mraid.getCurrentPosition().width + 'x' + mraid.getCurrentPosition().height + ' ' +"
      "mraid.getScreenSize().width + 'x' + innerHeight";
  const auto text = [](const Rect& place) {
    const auto w = std::to_string(static_cast<int>(place.width));
    const auto h = std::to_string(static_cast<int>(place.height));
    return w + "x" + h + " " + w + "x" + h;
  };
  const std::pair<Size, Rect> shapes[] = {{{360, 640}, {0, 200, 360, 240}},
                                          {{640, 360}, {0, 0, 640, 360}},
                                          {{700, 500}, {0, 0, 700, 500}},
                                          {{500, 700}, {0, 171, 500, 357}},
                                          {{360, 640}, {0, 200, 360, 240}}};
  bool listens = false;
  for (const auto& [window, place] : shapes) {
    SCOPED_TRACE(text(place));
    reshape(static_cast<int>(window.width), static_cast<int>(window.height));
    EXPECT_TRUE(becomes(size, text(place))) << evaluate(size);
    const int top = static_cast<int>(place.y);
    const int right = static_cast<int>(place.right());
    EXPECT_TRUE(showsPixel(right - 25, top + 10, ownControl));
    EXPECT_TRUE(showsPixel(right - 10, static_cast<int>(place.bottom()) - 10, mraidPage));
    if (top > 0) {
      EXPECT_TRUE(showsPixel(10, top - 10, colors::black));
    }
    EXPECT_EQ(buttonNameAt(host().window(), right - 20, top + 28), closeName) << "unseen but there";
    host().keepPicture("one-orientation-" + std::to_string(width()));
    if (!listens) {
      evaluate(
          "sizes = []; mraid.addEventListener('sizeChange', (w, h) => sizes.push(w + 'x' + h))");
    }
    listens = true;
  }
  EXPECT_EQ(evaluate("sizes.join()"), "640x360,700x500,500x357,360x240");
  auto& window = *gtk::rootViewControllerOf(host().window())->view()->window();
  window.setOrientationFit(OrientationFit::turn);
  reshape(400, 700);
  EXPECT_TRUE(becomes(size, text({0, 0, 700, 400})));
  EXPECT_TRUE(showsPixel(390, 675, ownControl));
  host().keepPicture("one-orientation-turned");
  ASSERT_TRUE(pressButtonAt(host().window(), 372, 680));
  window.setOrientationFit(OrientationFit::letterbox);
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
}

TEST_F(InterstitialOnScreenTest, APictureStandsInTheMiddleOfEveryShapeAndLeavesByEscape) {
  settings_->scalingAllowed = true;
  settings_->maintainAspectRatio = true;
  ASSERT_TRUE(show("interstitial-redirect"));
  EXPECT_TRUE(showsPixel(340, 620, posterCorner));
  host().keepPicture("picture");
  reshape(640, 360);
  EXPECT_TRUE(showsPixel(300, 30, poster)) << "as high as the window, with black beside it";
  EXPECT_TRUE(showsPixel(10, 180, colors::black));
  EXPECT_TRUE(waitForCorner(closeName));
  host().keepPicture("picture-landscape");
  EXPECT_TRUE(pressEscape());
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
  EXPECT_FALSE(pressEscape()) << "it is the host's key again";
}

TEST_F(InterstitialOnScreenTest, AVideoIsLeftByNothingBeforeItMayBeAndThenByAll) {
  for (const bool byKey : {false, true}) {
    SCOPED_TRACE(byKey);
    told_.clear();
    reshape(360, 640);
    ASSERT_TRUE(show("interstitial-video"));
    movie().pause();  // time stands still while we look
    EXPECT_TRUE(pressEscape()) << "the key is used up";
    reshape(640, 360);
    EXPECT_TRUE(showsYellowBar());
    EXPECT_EQ(told_, Lines{"didLoad"});
    host().keepPicture("video-countdown");
    movie().play();
    ASSERT_TRUE(host().runUntil([] {
      GtkWidget* button = buttonAt(host().window(), width() - 25, 20);
      return button != nullptr && gtk_widget_get_sensitive(button) != FALSE &&
             buttonNameAt(host().window(), width() - 25, 20) == "Close";
    }));
    host().keepPicture("video-close");
    EXPECT_TRUE(byKey ? pressEscape() : pressButtonAt(host().window(), width() - 25, 20));
    EXPECT_TRUE(showsHost());
    EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
  }
  const auto pings = host().server().record().requests(RequestKind::Tracking);
  EXPECT_EQ(std::count_if(pings.begin(), pings.end(),
                          [](const auto& ping) { return ping.detail == "skip"; }),
            2);
}

TEST_F(InterstitialOnScreenTest, AVideoThatEndsLeavesByItselfAndAPageMayComeNext) {
  ASSERT_TRUE(show("interstitial-video"));
  EXPECT_TRUE(host().runUntil([this] { return told_.back() == "dismissed"; }));
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(std::exchange(told_, {}), ElementsAre("didLoad", "dismissed"));
  ASSERT_TRUE(show("interstitial-html")) << "on the same controller";
  EXPECT_TRUE(showsPixel(10, 10, page));
  EXPECT_TRUE(waitForCorner(closeName));
  ASSERT_TRUE(pressCorner());
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(told_, ElementsAre("didLoad", "dismissed"));
}

TEST_F(InterstitialOnScreenTest, TheWindowsOwnButtonIsNeverHeldByAVideo) {
  Gtk::Window other;
  other.set_default_size(300, 400);
  other.present();
  ASSERT_TRUE(host().runUntil([&] { return other.get_mapped(); }));
  const auto root = gtk::rootViewControllerOf(other);
  events_ = std::make_shared<XAdInterstitialViewControllerDelegate>(
      XAdInterstitialViewControllerDelegate{.xAdInterstitialDidLoad = [&](Controller*) {
        told_.emplace_back("didLoad");
        root->presentViewController(controller_, Animated::yes);
      }});
  controller_->delegate.set(events_);
  ASSERT_TRUE(show("interstitial-video"));
  bool isGone = false;
  other.signal_unmap().connect([&] { isGone = true; });
  other.close();
  EXPECT_TRUE(host().runUntil([&] { return isGone; }));
  host().window().present();
}

TEST_F(InterstitialOnScreenTest, ALostPageEndsTheAd) {
  ASSERT_TRUE(show("interstitial-mraid"));
  ASSERT_TRUE(becomes("mraid.getState()", "default"));
  controller_->xadView()->webViewInstance()->evaluate("for (;;) {}", [](const std::string&) {});
  EXPECT_TRUE(host().runUntil([this] { return told_.back() == "didFail 1101"; }));
  EXPECT_TRUE(wasOnScreenAtFailure_) << "and for a second more";
  host().keepPicture("lost");
  EXPECT_TRUE(showsHost());
  EXPECT_THAT(told_, ElementsAre("didLoad", "didFail 1101"));
}

TEST_F(InterstitialOnScreenTest, AScreenThatWaitsForAnAdInVainLeavesByItself) {
  for (const char* campaign : {"interstitial-no-ad", "interstitial-error"}) {
    SCOPED_TRACE(campaign);
    told_.clear();
    present();
    load(campaign);
    ASSERT_TRUE(controller_->activityindicator());
    EXPECT_TRUE(showsPixel(10, 10, colors::black));
    host().keepPicture("waiting");
    EXPECT_TRUE(showsHost());
    EXPECT_THAT(told_, ElementsAre("didFail 1002"));
  }
  present();
  EXPECT_TRUE(showsPixel(10, 10, colors::black));
  EXPECT_TRUE(pressEscape()) << "nobody has to wait";
  EXPECT_TRUE(showsHost());
}

TEST_F(InterstitialOnScreenTest, AWindowThatIsDestroyedTakesTheAdAlong) {
  auto other = std::make_unique<Gtk::Window>();
  other->present();
  ASSERT_TRUE(host().runUntil([&] { return other->get_mapped(); }));
  ASSERT_TRUE(show("interstitial-html"));
  controller_->closeInterstitialAd();
  EXPECT_TRUE(showsHost());
  told_.clear();
  gtk::rootViewControllerOf(*other)->presentViewController(controller_, Animated::no);
  EXPECT_NE(controller_->presentingViewController(), nullptr);
  other.reset();
  EXPECT_EQ(controller_->presentingViewController(), nullptr);
  host().window().present();
}

}  // namespace
}  // namespace tavo::test
