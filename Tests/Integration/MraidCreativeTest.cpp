// Creatives in the real engine, in a real window, through the whole SDK: what they ask for happens
// on the screen, and what they are told is the truth.

#include "Services/RunLoop.h"
#include "Support/CreativeScreenTest.h"
#include "Support/WindowManager.h"

namespace tavo::test {
namespace {

class MraidCreativeTest : public CreativeScreenTest {};

TEST_F(MraidCreativeTest, EveryAnswerIsTrueWhenTheCreativeFirstAsks) {
  show("getters");
  ASSERT_TRUE(becomes("heard[heard.length - 1].indexOf('ready orientation')", "0"));
  const std::string heard = evaluate("heard.join('\\n')");
  const std::string screen =
      "{\"width\":" + std::to_string(width()) + ",\"height\":" + std::to_string(height()) + "}";
  for (const auto& line :
       {std::string{"ready state default"}, std::string{"ready viewable true"},
        std::string{"ready placement inline"},
        std::string{R"(ready current {"x":0,"y":0,"width":320,"height":50})"},
        std::string{R"(ready default {"x":20,"y":0,"width":320,"height":50})"},
        "ready max " + screen, "ready screen " + screen,
        "ready expand {\"isModal\":true,\"width\":" + std::to_string(width()) +
            ",\"height\":" + std::to_string(height()) + ",\"useCustomClose\":false}"}) {
    EXPECT_THAT(heard, HasSubstr(line));
  }
}

TEST_F(MraidCreativeTest, ExpandsOverTheWindowAndReturns) {
  show("ad");
  host().keepPicture("default");
  heard();
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  host().keepPicture("expanded");
  const auto& button = nameAt(width() - 15, 8 + 15);
  EXPECT_EQ(button, "Close Interstitial Ad");
  EXPECT_TRUE(pressButtonAt(host().window(), width() - 15, 8 + 15));
  ASSERT_TRUE(becomesSized("default", 320, 50));
  host().keepPicture("collapsed");
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad", "didExpand", "didCollapse"));
  const std::string size = std::to_string(width()) + " " + std::to_string(height());
  EXPECT_EQ(heard(), "stateChange expanded\nsizeChange " + size +
                         "\nstateChange default\nsizeChange 320 50");
  EXPECT_TRUE(host().runUntil([] { return nameAt(width() - 15, 8 + 15) == "no button"; }));
}

TEST_F(MraidCreativeTest, TheCreativeClosesItselfAndExpandsAgain) {
  show("ad");
  for (int round = 0; round < 3; ++round) {
    tapAndDo("document.getElementById('expand').click()");
    ASSERT_TRUE(becomesSized("expanded", width(), height()));
    evaluate("document.getElementById('close').click()");
    ASSERT_TRUE(becomesSized("default", 320, 50));
  }
  EXPECT_THAT(host().calls(), Contains("didExpand").Times(3));
  EXPECT_THAT(host().calls(), Contains("didCollapse").Times(3));
}

TEST_F(MraidCreativeTest, EscapeAndTheWindowsCloseButtonLeadOutOfTheAd) {
  show("ad");
  EXPECT_FALSE(pressEscape()) << "it is the host's key otherwise";
  for (const bool byWindow : {false, true}) {
    SCOPED_TRACE(byWindow);
    tapAndDo("mraid.useCustomClose(true); mraid.expand()");
    ASSERT_TRUE(becomesSized("expanded", width(), height()));
    EXPECT_EQ(nameAt(width() - 15, 8 + 15), "Close Interstitial Ad") << "unseen but there";
    if (byWindow) host().keepPicture("expanded-custom-close");
    if (byWindow) {
      host().window().close();
    } else {
      EXPECT_TRUE(pressEscape());
    }
    ASSERT_TRUE(becomesSized("default", 320, 50));
    EXPECT_TRUE(host().window().get_mapped());
  }
}

TEST_F(MraidCreativeTest, AnExpandedAdIsToldAsCollapsedWhenItsWindowIsMinimised) {
  show("ad");
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  const auto collapses = [] {
    return std::count(host().calls().begin(), host().calls().end(), "didCollapse");
  };
  setMinimised(host().window(), true);
  EXPECT_TRUE(host().runUntil([&] { return collapses() == 1; }));
  setMinimised(host().window(), false);
  EXPECT_TRUE(host().runUntil([] { return !host().banner()->subviews().empty(); }));
  EXPECT_EQ(collapses(), 1);
}

TEST_F(MraidCreativeTest, AFullScreenAdKeepsTheKeyboard) {
  Gtk::Button hostsOwn{"Host"};
  host().column().append(hostsOwn);
  show("ad");
  ASSERT_TRUE(hostsOwn.grab_focus());
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  EXPECT_TRUE(host().runUntil([&] { return !hostsOwn.grab_focus(); })) << "once it is drawn";
  EXPECT_TRUE(host().runUntil([&] { return !hostsOwn.has_focus(); }));
  evaluate("mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_TRUE(host().runUntil([&] { return host().window().get_focus() == &hostsOwn; }));
  host().column().remove(hostsOwn);
}

TEST_F(MraidCreativeTest, ResizesWithItsCloseControlAtEachPosition) {
  const std::pair<const char*, std::pair<int, int>> cases[] = {
      {"top-left", {1, 1}},        {"top-center", {150, 1}},  {"top-right", {299, 1}},
      {"center", {150, 125}},      {"bottom-left", {1, 249}}, {"bottom-center", {150, 249}},
      {"bottom-right", {299, 249}}};
  show("ad");
  const int left = (width() - 320) / 2;
  for (const auto& [position, place] : cases) {
    SCOPED_TRACE(position);
    heard();
    evaluate("resizeTo(300, 250, 0, 0, '" + std::string{position} + "')");
    ASSERT_TRUE(becomesSized("resized", 300, 250));
    host().keepPicture(std::string{"resized-"} + position);
    const double x = left + place.first;
    const double y = place.second;
    ASSERT_EQ(nameAt(x, y), "Close Resized Ad");
    ASSERT_TRUE(pressButtonAt(host().window(), x, y));
    ASSERT_TRUE(becomesSized("default", 320, 50));
    EXPECT_EQ(heard(),
              "sizeChange 300 250\nstateChange resized\nsizeChange 320 50\nstateChange default");
  }
  EXPECT_THAT(host().calls(), ElementsAre("shouldDisplay?", "didLoad"));
}

TEST_F(MraidCreativeTest, AResizeThatReachesFarOffTheScreenHurtsNobody) {
  show("ad");
  evaluate(
      "var frame = document.createElement('iframe');"
      "frame.src = 'mraid://setResizeProperties?width=9223372036854775807&height=100&offsetX=0"
      "&offsetY=0&allowOffscreen=true&customClosePosition=top-left';"
      "document.body.appendChild(frame);");
  evaluate(
      "var frame = document.createElement('iframe'); frame.src = 'mraid://resize';"
      "document.body.appendChild(frame);");
  ASSERT_TRUE(becomesSized("resized", 8192, 100));
  evaluate("mraid.close()");
  ASSERT_TRUE(becomesSized("default", 320, 50));
}

TEST_F(MraidCreativeTest, AllCommandsInOneTurnEndInTheDefaultState) {
  show("commands");
  ASSERT_TRUE(becomesSized("default", 320, 50));
  EXPECT_TRUE(host().window().get_mapped());
}

TEST_F(MraidCreativeTest, ASlotThatGoesTakesItsExpandedAdAlong) {
  show("ad");
  tapAndDo("mraid.expand()");
  ASSERT_TRUE(becomesSized("expanded", width(), height()));
  host().makeBanner();
  EXPECT_TRUE(host().runUntil([] { return nameAt(width() - 15, 8 + 15) == "no button"; }));
  EXPECT_FALSE(pressEscape());
}

TEST_F(MraidCreativeTest, AResizedAdAtTheBottomStaysOnEveryScreen) {
  host().slot().set_vexpand(true);
  host().slot().set_valign(Gtk::Align::END);
  show("ad");
  heard();
  const std::string whole = std::to_string(width()) + ", " + std::to_string(height());
  EXPECT_EQ(evaluate("resizeTo(" + whole + ", 0, 0, 'top-right'); heard.splice(0).join()"),
            "error Size must be smaller than the max size. resize")
      << "inside the call";
  const auto reshape = [](int newWidth, int newHeight) {
    host().window().set_default_size(newWidth, newHeight);
    return host().runUntil([&] { return width() == newWidth && height() == newHeight; });
  };
  ASSERT_TRUE(reshape(500, 800));
  ASSERT_TRUE(becomes("mraid.getMaxSize().width + ' ' + mraid.getScreenSize().height", "500 800"));
  evaluate("resizeTo(400, 700, 0, 0, 'top-right')");
  ASSERT_TRUE(becomesSized("resized", 400, 700)) << "larger than the window that was there before";
  evaluate("resizeTo(300, 250, 0, 0, 'top-right')");
  ASSERT_TRUE(becomesSized("resized", 300, 250));
  ASSERT_TRUE(reshape(640, 360));
  const auto isHeld = [] { return nameAt(160 + 299, 110 + 1) == "Close Resized Ad"; };
  EXPECT_TRUE(host().runUntil(isHeld)) << "the whole of it above the window's lower edge";
  EXPECT_TRUE(becomesSized("resized", 300, 250));
  host().keepPicture("resized-turned");

  heard();
  host().slot().set_visible(false);
  EXPECT_TRUE(becomes("mraid.getState()", "default"));
  EXPECT_TRUE(host().runUntil([&] { return !isHeld(); })) << "nothing stays of a hidden slot";
  evaluate("mraid.resize()");
  EXPECT_TRUE(becomes("heard[heard.length - 1]",
                      "error Can not resize while the ad is not on the screen. resize"));
  ASSERT_TRUE(reshape(360, 640));
}

TEST_F(MraidCreativeTest, OnlyOneAdIsExpandedAtATime) {
  const auto other = XAdView::create({0, 0, 320, 50});
  gtk::AdSlot slot{other};
  host().column().append(slot);
  other->setSlotConfiguration(host().settings);
  show("ad");
  other->loadWithDomainName(host().server().baseUrl().substr(7) + "/ads", "ad", "Bottom2");
  ASSERT_TRUE(host().runUntil([&] { return other->webViewInstance() != nullptr; }));
  const auto inOther = [&](const std::string& script) {
    std::optional<std::string> answer;
    other->webViewInstance()->evaluate(script, [&](const auto& result) { answer = result; });
    host().runUntil([&] { return answer.has_value(); });
    return *answer;
  };
  ASSERT_TRUE(host().runUntil([&] { return inOther("mraid.getState()") == "default"; }));
  recognizeTap(*other->webViewInstance());
  inOther("mraid.expand()");
  ASSERT_TRUE(host().runUntil([&] { return other->isAdExpanded(); }));
  heard();
  tapAndDo("mraid.expand()");
  EXPECT_TRUE(becomes("heard.join()",
                      "error Can not expand while something else covers the screen. expand"));
  EXPECT_EQ(evaluate("mraid.getState()"), "default");
  inOther("mraid.close()");
  ASSERT_TRUE(host().runUntil([&] { return !other->isAdExpanded(); }));
  tapAndDo("mraid.expand()");
  EXPECT_TRUE(becomesSized("expanded", width(), height()));
  host().column().remove(slot);
}

}  // namespace
}  // namespace tavo::test
