#include <cmath>

#include <tavo/MoviePlayer.h>

#include "Support/Testing.h"
#include "UserInterface/Movie/CountdownPlacement.h"
#include "UserInterface/NativeView/SkipProgress.h"
#include "UserInterface/NativeView/VideoMilestones.h"
#include "UserInterface/NativeView/VideoReturn.h"
#include "UserInterface/NativeView/VideoTime.h"

namespace tavo::test {
namespace {

TEST(VideoTimeTest, SecondsOfAClockTextQuirk) {
  using Case = std::pair<const char*, double>;
  const Case cases[] = {
      {"00:00:05", 5},
      {"01:02:03", 3723},
      {"00:00:05.500", 10},  // not 5.5
      {"00:00:05.5", 5.05},
      {"00:00:1.25", 1.25},
      {"", 0},
      {"7", 25200},
      {"00:07", 420},
      {"a:b:c", 0},
      {" 0: 1: 2", 62},
      {"00:00:-3", -3},
      {"00:00:9.1.9", 9.01},
      {"99999999999:0:0", 2147483647.0 * 3600},
  };
  for (const auto& [text, seconds] : cases) {
    EXPECT_DOUBLE_EQ(secondsWithString(text), seconds) << text;
  }
}

TEST(VideoTimeTest, PercentOfADuration) {
  EXPECT_DOUBLE_EQ(skipOffset("25%", "40.0"), 10);
  EXPECT_DOUBLE_EQ(skipOffset("50%", "20.000000"), 10);
  EXPECT_DOUBLE_EQ(skipOffset("%", "40"), 0);
  EXPECT_DOUBLE_EQ(skipOffset("inf%", "40"), 0);
  EXPECT_DOUBLE_EQ(skipOffset("1e400%", "40"), 0);
}

TEST(VideoTimeTest, CountdownTextDropsHoursQuirk) {
  using Case = std::pair<int, const char*>;
  const Case cases[] = {{5, "00:05"}, {59, "00:59"},   {60, "01:00"}, {3599, "59:59"},
                        {3600, ""},   {3660, "01:00"}, {0, ""},       {-1, ""},
                        {-3599, ""},  {-61, ""},       {90, "01:30"}};
  for (const auto& [seconds, text] : cases) EXPECT_EQ(convertIntToHHSS(seconds), text);
}

TEST(SkipPointTest, FromDocumentSettingsOrDuration) {
  struct Case {
    const char* document;
    double duration;
    std::int64_t type;
    std::int64_t time;
    const char* offset;
    float delay;
  };
  const Case cases[] = {
      {"00:00:05", 30, 0, 20, "00:00:05", 5},
      {"50%", 20, 0, 3, "50%", 10},
      {"12", 20, 0, 3, "12", 0},
      {"", 30, 0, 100, "00:00:30", 30},
      {"", 30.9, 0, 100, "00:00:30", 30},
      {"", 30, 0, 7, "00:00:07", 7},
      {"", 30, 0, -1, "00:00:00", 0},
      {"", 30, 1, 150, "00:00:30", 30},
      {"", 30, 1, 101, "00:00:30", 30},
      {"", 30, 1, 100, "00:00:30", 30},
      {"", 31, 1, 50, "00:00:15", 15},
      {"", 40, 1, 75, "00:00:30", 30},
      {"", 30, 1, -9, "00:00:00", 0},
      {"", 7384, 0, 9000, "02:03:04", 7384},
      {"", 30, 2, 10, "", 30},
      {"-5%", 30, 0, 0, "-5%", -1.5F},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(std::string{test.document} + " " + std::to_string(test.time));
    XAdSlotConfiguration slot;
    slot.skipOffsetType = test.type;
    slot.skipOffsetTime = test.time;
    const SkipPoint point = skipPoint(test.document, test.duration, &slot);
    EXPECT_EQ(point.skipOffset, test.offset);
    EXPECT_FLOAT_EQ(point.skipDelay, test.delay);
    EXPECT_EQ(point.wholeVideo, point.skipOffset.empty());
  }
  EXPECT_TRUE(skipPoint("", 30, nullptr).wholeVideo);
}

TEST(SkipPointTest, TheFirstCountdownOfAWholePrerollIgnoresTheTimeThatPassedQuirk) {
  const SkipPoint whole = skipPoint("", 30, nullptr);
  const SkipPoint five = skipPoint("00:00:05", 30, nullptr);
  EXPECT_EQ(firstCountdown(whole, 4.6, VideoUse::preroll), "00:30");
  EXPECT_EQ(firstCountdown(whole, 4.6, VideoUse::interstitial), "00:26");
  EXPECT_EQ(firstCountdown(five, 1.9, VideoUse::preroll), "00:04");
  EXPECT_EQ(countdown(five.skipDelay, 5.2), "");
  EXPECT_EQ(countdown(1e30F, 0), convertIntToHHSS(2147483647));
}

TEST(CountdownPlacementTest, SixPlacesAndTheRestEachAtItsEdgeOfAVideoOfAnySize) {
  const Rect control{271, 0, 44, 44};
  struct Case {
    std::optional<unsigned> position;
    Rect frame;
    TextAlignment alignment;
    Rect whenLarger;
  };
  const Case cases[] = {
      {0, {276, 0, 44, 44}, TextAlignment::right, {596, 0, 44, 44}},
      {1, {138, 0, 44, 44}, TextAlignment::center, {298, 0, 44, 44}},
      {2, {0, 0, 44, 44}, TextAlignment::left, {0, 0, 44, 44}},
      {3, {0, 136, 44, 44}, TextAlignment::left, {0, 336, 44, 44}},
      {4, {138, 136, 44, 44}, TextAlignment::center, {298, 336, 44, 44}},
      {5, {276, 136, 44, 44}, TextAlignment::right, {596, 336, 44, 44}},
      {6, control, TextAlignment::left, {591, 0, 44, 44}},
      {std::nullopt, control, TextAlignment::left, {591, 0, 44, 44}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.position.value_or(99));
    const CountdownPlacement place = countdownPlacement(test.position, {320, 180});
    EXPECT_EQ(place.frame, test.frame);
    EXPECT_EQ(place.alignment, test.alignment);
    const auto video = std::make_shared<View>(Rect{0, 0, 320, 180});
    const auto countdown = std::make_shared<View>(place.frame);
    countdown->setAutoresizingMask(place.autoresizing);
    video->addSubview(countdown);
    video->setFrame({0, 0, 640, 380});
    EXPECT_EQ(countdown->frame(), test.whenLarger);
  }
  EXPECT_EQ(controlPlacement({320, 180}).frame, control);
}

TEST(SkipProgressTest, TheCountdownLeadsToTheControlAndNoFurther) {
  using Case = std::tuple<float, double, std::optional<std::string>, bool>;
  const Case cases[] = {
      {-1, 3, std::nullopt, false},  // not known, or before the start
      {0, 0, std::nullopt, true},
      {5, 0, "00:05", false},
      {5, 4.9, "00:01", false},
      {5, 5, "", true},
      {5, 9, "", true},
      {30, 29.5, "00:01", false},
  };
  for (const auto& [delay, time, countdown, control] : cases) {
    SCOPED_TRACE(std::to_string(delay) + " at " + std::to_string(time));
    SkipProgress progress;
    progress.begin({.skipOffset = {}, .skipDelay = delay});
    EXPECT_EQ(progress.at(time).countdown, countdown);
    EXPECT_EQ(progress.at(time).control, control);
    progress.controlShown();
    EXPECT_EQ(progress.at(time).countdown, std::nullopt);
    EXPECT_FALSE(progress.at(time).control);
  }
}

TEST(SkipProgressTest, OnlyACountdownThatEndsWithinTheVideoIsWaitedFor) {
  using Case = std::tuple<float, double, double, bool>;
  const Case cases[] = {
      {25, 15, 30, true}, {30, 15, 30, true},     {60, 15, 30, false}, {-1.5F, 15, 30, false},
      {5, 15, 30, false}, {3600, 0, 4000, false},  // whose countdown shows nothing
      {25, 15, 0, false},
  };
  for (const auto& [delay, time, duration, counting] : cases) {
    SkipProgress progress;
    progress.begin({.skipOffset = {}, .skipDelay = delay});
    EXPECT_EQ(progress.isCounting(time, duration), counting) << delay;
  }
}

TEST(VideoMilestonesTest, EachChangeOfPlaybackMeansOneThing) {
  using enum MoviePlaybackState;
  struct Case {
    MoviePlaybackState state;
    VideoMilestones::Facts facts;
    Milestone meaning;
  };
  const VideoMilestones::Facts usual{.prepared = true};
  const VideoMilestones::Facts end{.prepared = true, .atEnd = true};
  const Case cases[] = {
      {paused, {}, Milestone::none},  // nothing to pause yet
      {playing, usual, Milestone::start},
      {playing, usual, Milestone::none},
      {seekingForward, usual, Milestone::none},
      {paused, usual, Milestone::pause},
      {interrupted, usual, Milestone::none},
      {playing, {}, Milestone::none},  // while it is fetched again
      {playing, usual, Milestone::resume},
      {playing, usual, Milestone::none},
      {seekingBackward, usual, Milestone::rewind},
      {seekingBackward, usual, Milestone::rewind},
      {paused, end, Milestone::none},
      {stopped, usual, Milestone::none},
  };
  VideoMilestones milestones;
  milestones.begin();
  for (const auto& test : cases) {
    EXPECT_EQ(milestones.playbackChanged(test.state, test.facts), test.meaning)
        << &test - &cases[0];
  }
}

TEST(VideoMilestonesTest, AQuartileIsReachedOnceInOrderWhereverTheVideoGoes) {
  struct Case {
    double part;
    std::vector<int> reached;
  };
  const Case cases[] = {{0, {}},   {0.2499, {}},  {0.25, {0}}, {0.1, {}},
                        {0.3, {}}, {0.8, {1, 2}}, {0.5, {}},   {1, {}}};
  VideoMilestones milestones;
  for (const auto& test : cases) {
    std::vector<int> reached;
    for (const Quartile& quartile : milestones.reached(test.part))
      reached.push_back(quartile.index);
    EXPECT_EQ(reached, test.reached) << test.part;
  }
  std::vector<TrackingEventType> events;
  for (const Quartile& quartile : quartilesBetween(0, 1)) events.push_back(quartile.event);
  EXPECT_THAT(events, ElementsAre(TrackingEventType::firstQuartile, TrackingEventType::midpoint,
                                  TrackingEventType::thirdQuartile));
}

TEST(VideoReturnTest, WhatFollowsWhenTheUserIsBack) {
  using enum MoviePlaybackState;
  using Case = std::pair<VideoStanding, VideoReturn>;
  const Case cases[] = {
      {{.over = true, .prepared = true, .state = paused}, {.handBack = true}},
      {{.prepared = false, .state = stopped, .endsWithClick = true}, {.beginAgain = true}},
      {{.prepared = false, .state = stopped}, {.beginAgain = true, .playOn = true}},
      {{.prepared = true, .state = paused}, {.playOn = true}},
      {{.prepared = true, .state = stopped}, {.playOn = true}},
      {{.prepared = true, .state = playing}, {}},
      {{.prepared = true, .state = paused, .endsWithClick = true}, {}},
  };
  for (const auto& [standing, plan] : cases) EXPECT_EQ(planReturn(standing), plan);
}

TEST(PlayedThroughTest, OnlyAVideoThatWasShownToItsEnd) {
  using Case = std::tuple<const char*, PlayedContent, bool>;
  const Case cases[] = {
      {"to the end", {true, 30, 30}, true},
      {"all but the last second", {true, 30, 29}, true},
      {"a little less", {true, 30, 28.9}, false},
      {"three quarters of a short one", {true, 2, 1.5}, true},
      {"half of it", {true, 2, 1}, false},
      {"nothing of it", {true, 30, 0}, false},
      {"beyond what its header says", {true, 30, 31}, true},
      {"a sound", {false, 30, 30}, false},
      {"of no length", {true, 0, 0}, false},
      {"of a length that is no number", {true, std::nan(""), 30}, false},
      {"shown until no number", {true, 30, std::nan("")}, false},
  };
  for (const auto& [name, content, through] : cases) {
    EXPECT_EQ(playedThrough(content), through) << name;
  }
}

}  // namespace
}  // namespace tavo::test
