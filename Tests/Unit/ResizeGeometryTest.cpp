#include <limits>

#include "Support/Testing.h"
#include "UserInterface/WebView/BaseViews/LayoutReport.h"
#include "UserInterface/WebView/BaseViews/ResizeGeometry.h"

namespace tavo::test {
namespace {

constexpr std::int64_t farthest = std::numeric_limits<std::int64_t>::max();

const ResizeRefusal noRoom{"Unable to determine superview for resize container view.", "expand"};
const ResizeRefusal interstitial{"Cannot Resize Ad when PlacementType is Interstitial", "expand"};
const ResizeRefusal tooEarly{"Can not resize while loading or hidden.", "resize"};
const ResizeRefusal expanded{"Can not resize while view is Already expanded .", "resize"};
const ResizeRefusal noSize{"Size required in resizeProperties.", "resize"};
const ResizeRefusal unseen{"Can not resize while the ad is not on the screen.", "resize"};
const ResizeRefusal tooLarge{"Size must be smaller than the max size.", "resize"};
const ResizeRefusal noWayOut{"Resize close control must remain on screen.", "resize"};

XMRAIDResizeProperties properties(std::int64_t width, std::int64_t height, std::int64_t x = 0,
                                  std::int64_t y = 0, bool offscreen = false,
                                  CustomClosePosition position = CustomClosePosition::topRight) {
  return {width, height, position, x, y, offscreen};
}

// A banner at the foot of a screen of 320 x 480 with a status bar.
ResizeFacts banner() {
  return {.superview = Rect{0, 20, 320, 460},
          .placement = PlacementType::inlined,
          .state = MRAIDState::normal,
          .ad = {0, 430, 320, 50}};
}

TEST(ResizeGeometry, TheFirstReasonAgainstAResizeIsTheOneTold) {
  struct Case {
    const char* name;
    ResizeRefusal refusal;
    XMRAIDResizeProperties asked;
    std::function<void(ResizeFacts&)> change = [](auto&) {};
  };
  const XMRAIDResizeProperties none;
  const auto good = properties(300, 250);
  using Facts = ResizeFacts;
  // From the first check to the last; each case breaks what the checks after its own look at, too.
  const Case cases[] = {
      {"no controller, the wrong action named: a quirk", noRoom, none,
       [](Facts& f) { f.superview.reset(), f.placement = PlacementType::interstitial; }},
      {"interstitial, the wrong action named: a quirk", interstitial, none,
       [](Facts& f) { f.placement = PlacementType::interstitial, f.state = MRAIDState::loading; }},
      {"loading", tooEarly, good, [](Facts& f) { f.state = MRAIDState::loading; }},
      {"hidden", tooEarly, good, [](Facts& f) { f.state = MRAIDState::hidden; }},
      {"expanded", expanded, none, [](Facts& f) { f.state = MRAIDState::expanded; }},
      {"not on the screen", unseen, none, [](Facts& f) { f.isSeen = false; }},
      {"no size", noSize, none},
      {"as large as the room: a quirk", tooLarge, properties(320, 460)},
      {"larger", tooLarge, properties(farthest, farthest)},
      {"larger in one direction, by the standard",
       {"Size must not be larger than the max size.", "resize"},
       properties(321, 100),
       [](Facts& f) { f.byStandard = true; }},
      {"interstitial, by the standard",
       {interstitial.message, "resize"},
       good,
       [](Facts& f) { f.byStandard = true, f.placement = PlacementType::interstitial; }},
      {"control above the screen", noWayOut, properties(300, 250, 0, -500, true)},
      {"control beside the screen", noWayOut, properties(300, 250, farthest, 0, true)},
      {"narrower than its control", noWayOut, properties(0, 50)},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    ResizeFacts facts = banner();
    test.change(facts);
    const auto outcome = planResize(test.asked, facts);
    const auto* refusal = std::get_if<ResizeRefusal>(&outcome);
    ASSERT_NE(refusal, nullptr);
    EXPECT_EQ(refusal->message, test.refusal.message);
    EXPECT_EQ(refusal->action, test.refusal.action);
  }
}

TEST(ResizeGeometry, WhereAContainerEndsUp) {
  using Case = std::tuple<const char*, XMRAIDResizeProperties, Rect>;
  const auto topLeft = CustomClosePosition::topLeft;
  const Case cases[] = {
      {"pushed up from the foot", properties(300, 250), {0, 230, 300, 250}},
      {"inside as it is", properties(100, 60, 10, -100), {10, 330, 100, 60}},
      {"pushed from all sides", properties(100, 60, -900, -900), {0, 20, 100, 60}},
      {"pushed back to the right edge", properties(100, 60, 900, 0), {220, 420, 100, 60}},
      {"too wide alone", properties(5000, 100), {0, 380, 320, 100}},
      {"too high alone", properties(100, farthest), {0, 20, 100, 460}},
      {"width 0 beside the edge", properties(0, 50, 100, 0, false, topLeft), {100, 430, 0, 50}},
      {"off-screen as asked",
       properties(400, 100, -50, -80, true, CustomClosePosition::topCenter),
       {-50, 350, 400, 100}},
      {"off-screen without end",
       properties(farthest, 60, 0, -60, true, topLeft),
       {0, 370, static_cast<double>(farthest), 60}},
  };
  for (const auto& [name, asked, container] : cases) {
    SCOPED_TRACE(name);
    const auto outcome = planResize(asked, banner());
    const auto* plan = std::get_if<ResizePlan>(&outcome);
    ASSERT_NE(plan, nullptr) << std::get<ResizeRefusal>(outcome).message;
    EXPECT_EQ(plan->container, container);
  }
}

TEST(ResizeGeometry, TheControlStandsWhereThePositionSays) {
  const std::pair<int, Rect> cases[] = {
      {0, {0, 0, 50, 50}},     {1, {125, 0, 50, 50}}, {2, {250, 0, 50, 50}},
      {3, {125, 100, 50, 50}}, {4, {0, 200, 50, 50}}, {5, {125, 200, 50, 50}},
      {6, {250, 200, 50, 50}}, {7, {250, 0, 50, 50}}, {-1, {250, 0, 50, 50}},
  };
  for (const auto& [position, control] : cases) {
    SCOPED_TRACE(position);
    const auto outcome = planResize(
        properties(300, 250, 0, 0, false, static_cast<CustomClosePosition>(position)), banner());
    EXPECT_EQ(std::get<ResizePlan>(outcome).closeControl, control);
  }
}

TEST(ResizeGeometry, TheStatusBarIsTakenOffAFullScreenOnly) {
  struct Case {
    Rect bounds;
    Size screen;
    Rect statusBar;
    InterfaceOrientation orientation;
    Rect room;
  };
  const Rect upright{0, 0, 320, 480};
  const Rect sideways{0, 0, 480, 320};
  const Case cases[] = {
      {upright, {320, 480}, {0, 0, 320, 20}, InterfaceOrientation::portrait, {0, 20, 320, 460}},
      {upright,
       {320, 480},
       {0, 460, 320, 20},
       InterfaceOrientation::portraitUpsideDown,
       {0, 20, 320, 460}},
      {sideways,
       {480, 320},
       {0, 0, 20, 480},
       InterfaceOrientation::landscapeLeft,
       {0, 20, 480, 300}},
      {upright, {320, 480}, {0, 0, 320, 20}, InterfaceOrientation::unknown, {0, 320, 320, 160}},
      {upright, {320, 480}, {}, InterfaceOrientation::portrait, upright},
      {{0, 0, 320, 400},
       {320, 480},
       {0, 0, 320, 20},
       InterfaceOrientation::portrait,
       {0, 0, 320, 400}},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(resizeViewMaxRect(test.bounds, test.screen, test.statusBar, test.orientation),
              test.room);
  }
}

TEST(LayoutReport, TellsWhatTheStateAndThePlacementSay) {
  struct Case {
    const char* name;
    std::function<void(LayoutFacts&)> change;
    LayoutReport report;
  };
  const Size screen{320, 480};
  const Rect home{0, 430, 320, 50};
  const Rect page{0, 0, 320, 50};
  const Rect whole{0, 0, 320, 480};
  const Case cases[] = {
      {"default", [](auto&) {}, {screen, home, page, true}},
      {"expanded", [](auto& f) { f.state = MRAIDState::expanded; }, {screen, home, whole, true}},
      {"expanded but hidden",
       [](auto& f) {
         f.state = MRAIDState::expanded;
         f.isOnScreen = false;
       },
       {screen, home, whole, true}},
      {"not on the screen", [](auto& f) { f.isOnScreen = false; }, {screen, home, page, false}},
      {"scrolled away",
       [](auto& f) {
         f.page = {0, 480, 320, 50};
       },
       {screen, home, {0, 480, 320, 50}, false}},
      {"under the browser",
       [](auto& f) {
         f.state = MRAIDState::expanded;
         f.appBrowserOpen = true;
       },
       {screen, home, whole, false}},
      {"interstitial",
       [](auto& f) { f.placement = PlacementType::interstitial; },
       {screen, home, page, true}},
      {"no known placement",
       [](auto& f) { f.placement = static_cast<PlacementType>(2); },
       {screen, whole, {}, false}},
  };
  for (const auto& test : cases) {
    LayoutFacts facts{.state = MRAIDState::normal,
                      .placement = PlacementType::inlined,
                      .screen = screen,
                      .defaultFrame = home,
                      .page = page,
                      .isOnScreen = true};
    test.change(facts);
    EXPECT_EQ(layoutReport(facts), test.report) << test.name;
  }
}

}  // namespace
}  // namespace tavo::test
