#include <algorithm>
#include <set>
#include <stdexcept>

#include "OnlineRequest/XTrackingRequest.h"
#include "Services/CookieStore.h"
#include "Support/GtkHost.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/Testing.h"
#include "Support/WebProcesses.h"
#include "Support/WidgetTree.h"

namespace tavo::test {
namespace {

using adserver::RequestKind;

GtkHost& host() {
  static GtkHost only{sampleCampaigns()};
  return only;
}

// The pixel of the sample picture (640 x 100) as the decoder reads it.
Color pixelOfPicture(int x, int y) {
  const auto file =
      Gdk::Texture::create_from_filename(sampleCampaigns() + "/image-banner/banner.png");
  std::vector<guchar> pixels(640 * 100 * 4);
  gdk_texture_download(file->gobj(), pixels.data(), 640 * 4);
  const auto at = static_cast<std::size_t>(y * 640 + x) * 4;
  return {static_cast<float>(pixels[at + 2]) / 255.0F, static_cast<float>(pixels[at + 1]) / 255.0F,
          static_cast<float>(pixels[at]) / 255.0F, 1};
}

class BannerOnScreenTest : public testing::Test {
 protected:
  BannerOnScreenTest() {
    host().makeBanner();
    host().server().record().clear();
    *host().settings = {};
  }
};

TEST_F(BannerOnScreenTest, APictureIsCroppedOrScaledAsConfigured) {
  struct Case {
    const char* name;
    bool scales;
    int pictureX;  // the pixel of the picture that must stand at (316, 47) of the slot
    int pictureY;
  };
  const Case cases[] = {{"cropped", false, 316, 47}, {"scaled", true, 632, 94}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    host().makeBanner();
    host().server().record().clear();
    host().settings->scalingAllowed = test.scales;
    host().load("image-banner");
    EXPECT_TRUE(host().waitForPixel(316, 47, pixelOfPicture(test.pictureX, test.pictureY)));
    EXPECT_TRUE(host().runUntil([] { return host().recorded(RequestKind::Tracking) == 1; }));
    EXPECT_THAT(host().calls(), ElementsAre("didLoad"));
  }
}

// Whatever stands in it, and however large that grows.
TEST_F(BannerOnScreenTest, AnAdIsCutOffAtItsEdges) {
  host().load("image-banner");
  EXPECT_TRUE(host().waitForPixel(2, 2, pixelOfPicture(2, 2)));
  const Color behind = host().pixelInSlot(2, 60);
  const auto frame = std::make_shared<View>(Rect{0, 0, 320, 40});
  const auto inside = std::make_shared<View>(Rect{0, 0, 100, 40});
  inside->setBackgroundColor(Color{1, 0, 0, 1});
  frame->addSubview(inside);
  host().banner()->addSubview(frame);
  EXPECT_TRUE(host().waitForPixel(2, 39, Color{1, 0, 0, 1}));
  inside->setFrame({0, 0, 100, 90});
  EXPECT_TRUE(host().waitForPixel(2, 48, Color{1, 0, 0, 1}));
  EXPECT_EQ(host().pixelInSlot(2, 60), behind);
}

TEST_F(BannerOnScreenTest, AnHtmlBannerRunsItsScriptAtItsSize) {
  host().load("html-banner");
  // The creative is grey until its script has run; then its button is yellow.
  const Color button{1.0F, 207.0F / 255, 63.0F / 255, 1};
  EXPECT_TRUE(host().waitForPixel(270, 14, button));
  EXPECT_TRUE(host().runUntil([] { return host().recorded(RequestKind::Tracking) == 1; }));
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad"));
  const auto page = std::dynamic_pointer_cast<WebView>(host().banner()->subviews().back());
  ASSERT_TRUE(page);
  std::string size;
  page->evaluate("innerWidth + 'x' + innerHeight", [&](const std::string& text) { size = text; });
  EXPECT_TRUE(host().runUntil([&] { return !size.empty(); }));
  EXPECT_EQ(size, "320x50");
}

// Presses the first gesture of a click below `top`, where GTK would tell it.
bool tapBelow(Gtk::Widget& top) {
  const auto widgets = widgetsBelow<Gtk::Widget>(top);
  return std::any_of(widgets.begin(), widgets.end(), [](Gtk::Widget* widget) {
    const auto all = Glib::wrap(gtk_widget_observe_controllers(widget->gobj()));
    for (guint at = 0; at < all->get_n_items(); ++at) {
      const auto controller = all->get_object(at);
      if (!GTK_IS_GESTURE_CLICK(controller->gobj())) continue;
      g_signal_emit_by_name(controller->gobj(), "released", 1, 5.0, 5.0);
      return true;
    }
    return false;
  });
}

// The next answer may be there before the page on the screen has gone, and has answered what it was
// asked at its end.
TEST_F(BannerOnScreenTest, ASlotThatIsRefreshedAtOnceStartsNoProcessForEachAd) {
  constexpr int refreshes = 40;
  constexpr std::size_t mostProcesses = 3;  // the first, that of the views, and one for the next
  std::set<int> started;
  for (int refresh = 1; refresh <= refreshes; ++refresh) {
    host().server().record().clear();
    host().load("html-banner");
    ASSERT_TRUE(host().runUntil([] { return host().recorded(RequestKind::Tracking) > 0; }));
    started.merge(webProcesses());
  }
  EXPECT_LE(started.size(), mostProcesses);
}

TEST_F(BannerOnScreenTest, AHostThatThrowsInsideItsReportsGoesOn) {
  std::vector<std::string> thrown;
  const auto fail = [&](const char* report) {
    thrown.emplace_back(report);
    throw std::runtime_error{report};
  };
  const auto events = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = [&](XAdView&) { fail("didLoad"); },
      .xAdViewWillOpenInInAppBrowser = [&](XAdView&) { fail("willOpen"); },
      .xAdViewShouldDisplayAdOnWebViewFinishRender = [&](XAdView&, WebView&) -> bool {
        fail("shouldDisplay?");
        return true;
      }});
  host().settings->shouldOpenClickThroughURLInAppBrowser = true;
  for (const char* campaign : {"html-banner", "image-banner"}) {
    host().makeBanner();
    host().banner()->delegate.set(events);
    host().load(campaign);
    const auto before = thrown.size();
    EXPECT_TRUE(host().runUntil([&] {
      return thrown.size() > before && thrown.back() == "didLoad";
    })) << campaign;
  }
  EXPECT_TRUE(host().runUntil([] { return tapBelow(host().slot()); }));
  EXPECT_TRUE(host().runUntil([&] { return thrown.size() > 3; }));
  EXPECT_THAT(thrown, ElementsAre("shouldDisplay?", "didLoad", "didLoad", "willOpen"));
}

TEST_F(BannerOnScreenTest, ASlotThatLeavesItsWindowLetsGoOfItsAd) {
  host().load("image-banner");
  EXPECT_TRUE(host().runUntil([] { return !host().calls().empty(); }));
  EXPECT_FALSE(host().banner()->subviews().empty());
  // Moved to another place of the window within one turn, it keeps its ad.
  host().slot().reference();
  host().column().remove(host().slot());
  host().column().prepend(host().slot());
  host().slot().unreference();
  EXPECT_TRUE(host().waitForPixel(2, 2, pixelOfPicture(2, 2)));
  EXPECT_FALSE(host().banner()->subviews().empty());
  host().column().remove(host().slot());
  EXPECT_TRUE(host().runUntil([] { return host().banner()->subviews().empty(); }));
  host().column().append(host().slot());
}

// The value of a header of a request as it came over the wire.
std::string headerOf(const std::string& request, const std::string& name) {
  const auto at = request.find(name + ": ");
  if (at == std::string::npos) return "none";
  const auto start = at + name.size() + 2;
  return request.substr(start, request.find_first_of("\r\n", start) - start);
}

TEST_F(BannerOnScreenTest, ACookieCheckByRedirectPassesAndAnotherHostGetsItsOwnCookies) {
  HostileServer server;
  const std::string path = "/d/sdk/page/@Bottom1";
  server.on(path, std::vector<Behaviour>{
                      PlainAnswer{.status = 302,
                                  .headers = {{"Set-Cookie", "check=1"}, {"Location", path}}},
                      Redirect{server.url("/ad", "localhost")}});
  server.on("/ad", PlainAnswer{.body = R"({"Ad":[]})"});
  Runtime::current().platform().cookies->storeFromHeaders({{"Set-Cookie", "theirs=1"}},
                                                          Url::parse(server.url("/", "localhost")));
  host().banner()->loadWithDomainName("127.0.0.1:" + std::to_string(server.port()) + "/d", "page",
                                      "Bottom1");
  ASSERT_TRUE(host().runUntil([&] { return !host().calls().empty(); }));
  EXPECT_THAT(host().calls(), ElementsAre("didFail 1002"));
  const auto asked = server.requests();
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_THAT(headerOf(asked[0], "Cookie"), Not(HasSubstr("check")));
  EXPECT_THAT(headerOf(asked[1], "Cookie"), HasSubstr("check=1; DAPROPS="));
  EXPECT_EQ(headerOf(asked[2], "Cookie"), "theirs=1");
}

TEST_F(BannerOnScreenTest, ATrackerThatIsSilentTakesNothingFromOneThatAnswers) {
  HostileServer server;
  server.on("/silent", NeverAnswer{});
  server.on("/healthy", PlainAnswer{.body = "x", .contentType = "image/gif"});
  const auto ping = [&](const std::string& url) {
    XTrackingRequest::sendAsynchronousRequest(*Runtime::current().environment(), Url::parse(url),
                                              "ping", host().settings);
  };
  for (int number = 0; number < 300; ++number) ping(server.url("/silent", "localhost"));
  for (int number = 0; number < 20; ++number) ping(server.url("/healthy"));
  EXPECT_TRUE(host().runUntil([&] {
    const auto asked = server.requests();
    return std::count_if(asked.begin(), asked.end(), [](const std::string& request) {
             return request.starts_with("GET /healthy");
           }) == 20;
  }));
}

}  // namespace
}  // namespace tavo::test
