// Ads of an external network, out of its real library, in a real window.

#include "Gtk/Services/GtkApplication.h"
#include "Scene/Window.h"
#include "Support/GtkHost.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WidgetTree.h"
#include "UserInterface/WebView/BaseViews/XAdViewOnlyForSubClassEyesDelegate.h"

namespace tavo::test {
namespace {

constexpr Color sun{1.0F, 193.0F / 255, 7.0F / 255, 1};

std::string text(const std::optional<Error>& error) {
  return error ? std::to_string(error->code) + " " + error->description : "none";
}

// Presses the close button of the network's page; false when there is none.
bool pressClose(Gtk::Window& window) {
  const auto buttons = widgetsBelow<Gtk::Button>(
      window, [](Gtk::Button& button) { return button.get_tooltip_text() == "Close the ad"; });
  if (buttons.size() != 1) return false;
  g_signal_emit_by_name(buttons.front()->gobj(), "clicked");
  return true;
}

// A host with the network library of a path, and a list of what its banner tells.
class MediatedHost {
 public:
  explicit MediatedHost(const std::string& library) : host_{sampleCampaigns(), {}, library} {
    host_.banner()->delegate.set(events_);
    host_.banner()->pDelegate.set(interstitialEvents_);
    host_.settings->mediationBannerWidth = 320;
    host_.settings->mediationBannerHeight = 50;
    host_.runUntil([this] { return host_.window().get_mapped() && window().get_width() > 0; });
    auto& application = dynamic_cast<gtk::GtkApplication&>(*platform().application);
    root_ = application.sceneOf(host_.window())->window()->rootViewController();
  }

  // Asks for an ad that the server does not have, so that the network is asked for `placement`.
  void loadPlacement(const std::string& placement) {
    host_.settings->canMediate = 1;
    host_.settings->mediationPlacementId = placement;
    host_.load("no-ad");
  }
  bool waitFor(const std::string& line) {
    return host_.runUntil([&] { return !told.empty() && told.back() == line; });
  }
  static const Platform& platform() { return Runtime::current().platform(); }
  [[nodiscard]] Gtk::Window& window() { return host_.window(); }
  [[nodiscard]] GtkHost& gtk() { return host_; }
  [[nodiscard]] XAdView& banner() { return *host_.banner(); }
  [[nodiscard]] ViewController& root() { return *root_; }

  std::vector<std::string> told;

 private:
  GtkHost host_;
  std::shared_ptr<ViewController> root_;
  const std::shared_ptr<const XAdViewOnlyForSubClassEyesDelegate> interstitialEvents_ =
      std::make_shared<XAdViewOnlyForSubClassEyesDelegate>(XAdViewOnlyForSubClassEyesDelegate{
          .isRequiredDelegateImplementedByPublisher = [] { return true; }});
  const std::shared_ptr<const XAdViewDelegate> events_ = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = [this](XAdView&) { told.emplace_back("didLoad"); },
                      .xAdViewDidFailWithError =
                          [this](XAdView&, const std::optional<Error>& error) {
                            told.push_back("didFail " + text(error));
                          },
                      .xAdViewDidClickOnAd = [this](XAdView&) { told.emplace_back("didClick"); },
                      .xAdViewWillOpenInInAppBrowser =
                          [this](XAdView&) { told.emplace_back("willOpenBrowser"); }});
};

TEST(MediationOnScreenTest, ABannerOfTheLibraryIsDrawnAndOpensItsPage) {
  MediatedHost host{TAVO_SAMPLE_NETWORK};
  host.gtk().settings->shouldOpenClickThroughURLInAppBrowser = true;
  host.gtk().load("mediated-banner");
  ASSERT_TRUE(host.waitFor("didLoad"));
  EXPECT_TRUE(host.gtk().waitForPixel(25, 25, sun));
  host.gtk().keepPicture("mediated-banner");
  EXPECT_EQ(host.gtk().recorded(adserver::RequestKind::Tracking), 0U)
      << "the network counts its own impressions";

  EXPECT_NE(deliverTap(host.banner(), {160, 25}), nullptr);
  EXPECT_THAT(host.told, ElementsAre("didLoad", "didClick", "willOpenBrowser"));
  ASSERT_NE(host.root().presentedViewController(), nullptr);
  EXPECT_TRUE(host.gtk().waitForPixelInWindow(180, 300, sun));
  host.gtk().keepPicture("mediated-banner-page");
  EXPECT_TRUE(pressClose(host.window()));
  EXPECT_EQ(host.root().presentedViewController(), nullptr);
  EXPECT_TRUE(host.gtk().waitForPixel(25, 25, sun)) << "still there";
}

TEST(MediationOnScreenTest, AnInterstitialOfTheLibraryCoversTheWindowUntilItIsClosed) {
  MediatedHost host{TAVO_SAMPLE_NETWORK};
  host.banner().setMobileAdTypes(MobileAdTypes::interstitial);
  host.banner().setPlacementType(PlacementType::interstitial);
  const std::function<bool()> ways[] = {
      [&] { return pressClose(host.window()); },
      [&] { return pressKey(host.window(), GDK_KEY_Escape); },
  };
  for (const auto& leave : ways) {
    host.told.clear();
    host.gtk().load("mediated-banner");
    ASSERT_TRUE(host.waitFor("didLoad"));
    EXPECT_THAT(host.told, ElementsAre("willOpenBrowser", "didLoad"));
    ASSERT_NE(host.root().presentedViewController(), nullptr);
    EXPECT_TRUE(host.gtk().waitForPixelInWindow(180, 300, sun));
    EXPECT_FALSE(host.gtk().column().get_can_focus()) << "the keyboard stays with the ad";
    host.gtk().keepPicture("mediated-interstitial");
    EXPECT_TRUE(leave());
    EXPECT_EQ(host.root().presentedViewController(), nullptr);
    EXPECT_TRUE(host.gtk().runUntil([&] { return host.gtk().column().get_can_focus(); }));
  }
}

TEST(MediationOnScreenTest, TheNetworksOwnRefusalsReachTheHost) {
  MediatedHost host{TAVO_SAMPLE_NETWORK};
  host.gtk().load("mediated-no-fill");
  EXPECT_TRUE(host.waitFor("didFail 1 No ad to fill the slot."));
  EXPECT_THAT(host.banner().subviews(), IsEmpty());
  host.loadPlacement("error");
  EXPECT_TRUE(host.waitFor("didFail 2 The sample server is down."));
}

TEST(MediationOnScreenTest, TheEnvironmentNamesALibraryWhereTheHostDoesNot) {
  g_setenv("TAVO_AD_NETWORK", TAVO_SAMPLE_NETWORK, TRUE);
  {
    MediatedHost host{""};
    host.gtk().load("mediated-banner");
    EXPECT_TRUE(host.waitFor("didLoad"));
  }
  {
    MediatedHost host{"/nonexistent/network.so"};
    host.gtk().load("mediated-banner");
    EXPECT_TRUE(host.waitFor("didFail 1008 Missing required mediation classes."));
  }
  g_unsetenv("TAVO_AD_NETWORK");
}

TEST(MediationOnScreenTest, WithoutALibraryToUseTheBannerFailsAndKeepsItsSubviews) {
  g_unsetenv("TAVO_AD_NETWORK");
  const std::string nothing;
  for (const std::string& library : {nothing, std::string{"/nonexistent/network.so"},
                                     sampleCampaigns() + "/mediated-banner/answer.json",
                                     std::string{TAVO_WRONG_VERSION_NETWORK}}) {
    SCOPED_TRACE(library);
    MediatedHost host{library};
    const auto own = std::make_shared<View>();
    host.banner().addSubview(own);
    host.gtk().load("mediated-banner");
    EXPECT_TRUE(host.waitFor("didFail 1008 Missing required mediation classes."));
    EXPECT_THAT(host.told, ElementsAre(testing::_));
    EXPECT_THAT(host.banner().subviews(), ElementsAre(own));
  }
}

TEST(MediationOnScreenTest, AHostileLibraryIsToldOnce) {
  MediatedHost host{TAVO_HOSTILE_NETWORK};
  const std::string thrown = "didFail 1008 The mediation network raised an exception.";
  for (const char* placement : {"throw", "throw-number"}) {
    host.told.clear();
    host.loadPlacement(placement);
    EXPECT_TRUE(host.waitFor(thrown));
    EXPECT_THAT(host.told, ElementsAre(thrown));
  }
}

}  // namespace
}  // namespace tavo::test
