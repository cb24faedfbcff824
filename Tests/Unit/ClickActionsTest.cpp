// The six actions and the video: asked, refused, allowed, impossible, cancelled.

#include "Unit/ClickActionsFixture.h"

namespace tavo::test {
namespace {

struct OutsideAction {
  const char* name;
  void (ClickActions::*open)(const Url&);
  const char* url;
  const char* scheme;
  const char* question;
};

constexpr OutsideAction outsideActions[] = {
    {"phone", &ClickActions::openDiallerWithUrl, "tel:+41123", "tel", "asked 1"},
    {"faceTime", &ClickActions::makeFaceTimeCallWithUrl, "facetime:a@b.example", "facetime",
     "asked 4"},
    {"appStore", &ClickActions::openAppStoreWithURL, "http://store.example/id1", "http", "asked 5"},
};

TEST_F(ClickActionsTest, OpensOutsideWhatTheHostAllowsAndTheSystemCan) {
  for (const auto& action : outsideActions) {
    SCOPED_TRACE(action.name);
    const Url url = Url::fromText(action.url);
    ((*actions_).*action.open)(url);
    EXPECT_THAT(happened(), ElementsAre(action.question, "willLeaveApplication"));
    EXPECT_EQ(view_.asked, (ClickToActionParameters{{"XParameterCommandURL", url}}));
    EXPECT_THAT(opened(), ElementsAre(action.url));
    platform_.application->openedUrls.clear();

    view_.allows = false;
    ((*actions_).*action.open)(url);
    EXPECT_THAT(happened(), ElementsAre(action.question));
    view_.allows = true;
    platform_.application->openableSchemes.erase(action.scheme);
    ((*actions_).*action.open)(url);
    EXPECT_THAT(happened(), ElementsAre(action.question));
    EXPECT_THAT(opened(), IsEmpty());
  }
}

TEST_F(ClickActionsTest, AMessageIsShownBeforeItIsSent) {
  for (const auto result : {MessageComposeResult::cancelled, MessageComposeResult::sent,
                            MessageComposeResult::failed}) {
    actions_->sendSMSWithUrl(Url::fromText("sms:1,2?body=Hi%20there"));
    EXPECT_THAT(happened(), ElementsAre("asked 2"));
    EXPECT_EQ(platform_.composers->messages.back(), (MessageDraft{{"1", "2"}, "Hi there"}));
    EXPECT_EQ(presenters(), "current");
    platform_.composers->messageFinished(result);
    EXPECT_EQ(presenters(), "");
  }
  view_.allows = false;
  actions_->sendSMSWithUrl(Url::fromText("sms:1"));
  view_.allows = true;
  platform_.composers->textCanBeSent = false;
  actions_->sendSMSWithUrl(Url::fromText("sms:1"));
  EXPECT_THAT(platform_.composers->messages, SizeIs(3)) << "without consent or means there is none";
  EXPECT_THAT(happened(), ElementsAre("asked 2", "asked 2"));
  platform_.composers->textCanBeSent = true;
  actions_->sendSMSWithUrl(Url::fromText("sms:1"));
  platform_.composers->messageFinished(static_cast<MessageComposeResult>(3));
  EXPECT_EQ(presenters(), "current") << "an unknown result leaves the composer";
}

TEST_F(ClickActionsTest, WhoPresentsAMessageFollowsTheState) {
  using enum MRAIDState;
  constexpr auto inlined = PlacementType::inlined;
  constexpr auto interstitial = PlacementType::interstitial;
  const std::tuple<MRAIDState, PlacementType, std::string> rows[] = {
      {normal, inlined, "current"},
      {resized, inlined, "current"},
      {expanded, inlined, "expanded"},
      {loading, inlined, ""},
      {hidden, inlined, ""},
      {loading, interstitial, "current"},
      {expanded, interstitial, "current"}};
  for (const auto& [state, placement, presenter] : rows) {
    view_.mraidState = state;
    view_.placement = placement;
    actions_->sendSMSWithUrl(Url::fromText("sms:1"));
    EXPECT_EQ(presenters(), presenter) << static_cast<int>(state);
    if (!presenter.empty()) platform_.composers->messageFinished(MessageComposeResult::sent);
  }
  view_.placement = PlacementType::inlined;
  view_.mraidState = normal;
  view_.current = nullptr;
  actions_->sendSMSWithUrl(Url::fromText("sms:1"));
  EXPECT_EQ(presenters(), "");
}

TEST_F(ClickActionsTest, AMailIsShownBeforeItIsSent) {
  view_.mraidState = MRAIDState::expanded;
  actions_->sendEmailWithUrl(Url::fromText("mailto:a@b.example?subject=S%20T&body=B"));
  EXPECT_THAT(happened(), ElementsAre("asked 3"));
  EXPECT_EQ(view_.asked,
            (ClickToActionParameters{{"XParameterMailRecipient", std::string{"a@b.example"}},
                                     {"XParameterMailSubject", std::string{"S%20T"}},
                                     {"XParameterMailBody", std::string{"B"}}}));
  EXPECT_THAT(platform_.composers->mails, ElementsAre(MailDraft{{"a@b.example"}, "S%20T", "B"}));
  EXPECT_EQ(presenters(), "expanded");
  platform_.composers->mailFinished(MailComposeResult::cancelled);
  EXPECT_EQ(presenters(), "");
  view_.allows = false;
  actions_->sendEmailWithUrl(Url::fromText("mailto:"));
  EXPECT_THAT(platform_.composers->mails, SizeIs(1));
  view_.allows = true;
  expanded_->view()->removeFromSuperview();
  actions_->sendEmailWithUrl(Url::fromText("mailto:a@b.example"));
  EXPECT_EQ(presenters(), "current") << "that of a banner which is not expanded is not lost";
  EXPECT_EQ(platform_.composers->mails.back(), (MailDraft{{"a@b.example"}, "", ""}));
}

constexpr const char* eventText = R"({"description":"D","start":"2026-11-21T10:00:00Z"})";

TEST_F(ClickActionsTest, AnEventIsShownAndSaved) {
  actions_->createCalendarEvent(eventText);
  EXPECT_THAT(happened(), ElementsAre("asked 6"));
  EXPECT_EQ(presenters(), "") << "not before access is granted";
  settle();
  EXPECT_EQ(presenters(), "root");
  CalendarEvent edited = platform_.composers->events.at(0);
  EXPECT_EQ(edited.title, "D");
  edited.title = "edited";
  platform_.composers->eventFinished(EventEditAction::saved, edited);
  settle();
  EXPECT_EQ(presenters(), "");
  EXPECT_THAT(platform_.calendarAccess->saved, ElementsAre(edited));
  EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(ClickActionsTest, WhatGoesWrongWithAnEventReachesTheCreative) {
  const auto finish = [this](EventEditAction action) {
    return [this, action] {
      settle();
      platform_.composers->eventFinished(action, platform_.composers->events.back());
      settle();
    };
  };
  struct Row {
    const char* name;
    std::function<void()> arrange;
    Lines happens;
    std::function<void()> finish = [] {};
    const char* event = eventText;
  };
  const auto nothing = [] {};
  auto& calendar = *platform_.calendarAccess;
  const std::string to = " for createCalendarEvent";
  const Row rows[] = {
      {"unreadable", nothing, {"error Unable to parse event data." + to}, nothing, "{"},
      {"refused by the host", [&] { view_.allows = false; }, {"asked 6"}},
      {"no access",
       [&] { calendar.requestable = false; },
       {"asked 6", "error Access denied." + to}},
      {"refused by the user", [&] { calendar.grants = false; }, {"asked 6"}},
      {"cancelled",
       nothing,
       {"asked 6", "error User canceled." + to},
       finish(EventEditAction::cancelled)},
      {"deleted",
       nothing,
       {"asked 6", "error User canceled." + to},
       finish(EventEditAction::deleted)},
      {"not saved",
       [&] {
         calendar.saveError = Error{"calendar", 1, "Full."};
       },
       {"asked 6", "error Full." + to},
       finish(EventEditAction::saved)},
      {"no presenter", [&] { view_.root = nullptr; }, {"asked 6"}},
      {"not on screen", [&] { view_.mraidState = MRAIDState::hidden; }, {"asked 6"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    row.arrange();
    actions_->createCalendarEvent(row.event);
    settle();
    row.finish();
    EXPECT_EQ(happened(), row.happens);
    EXPECT_EQ(presenters(), "");
    view_.allows = true;
    view_.root = root_.get();
    view_.mraidState = MRAIDState::normal;
    calendar.requestable = calendar.grants = true;
    calendar.saveError.reset();
  }
  EXPECT_THAT(platform_.calendarAccess->saved, IsEmpty());
}

TEST_F(ClickActionsTest, AnExpandedAdComesBackAfterTheEditor) {
  const auto leaveCalendar = [this](MRAIDState before, MRAIDState after) {
    view_.mraidState = before;
    actions_->createCalendarEvent(eventText);
    settle();
    EXPECT_EQ(view_.reExpands, before == MRAIDState::expanded);
    view_.mraidState = after;
    platform_.composers->eventFinished(EventEditAction::saved, platform_.composers->events.back());
    EXPECT_EQ(presenters(), "");
    EXPECT_FALSE(view_.reExpands);
    return happened();
  };
  using enum MRAIDState;
  EXPECT_THAT(leaveCalendar(expanded, expanded), ElementsAre("asked 6", "presentExpandView"));
  EXPECT_THAT(leaveCalendar(expanded, normal), ElementsAre("asked 6")) << "closed meanwhile";
  EXPECT_THAT(leaveCalendar(normal, normal), ElementsAre("asked 6"));
}

TEST_F(ClickActionsTest, CalendarAccessIsAskedForOnceWhereNothingIsDecided) {
  using enum CalendarAuthorization;
  actions_->checkCalendarAuthorizationStatus();
  platform_.calendarAccess->status = authorized;
  actions_->checkCalendarAuthorizationStatus();
  EXPECT_EQ(platform_.calendarAccess->requests, 0);
  platform_.calendarAccess->status = notDetermined;
  actions_->checkCalendarAuthorizationStatus();
  settle();
  EXPECT_EQ(platform_.calendarAccess->requests, 1);
  EXPECT_THAT(platform_.log->messages(), Contains("Calendar Authorized: 1"));
}

TEST_F(ClickActionsTest, WhoHasAskedPerformsWithoutTheQuestion) {
  const auto perform = [this](ClickToAction action, const char* url) {
    actions_->performClickToAction(action, {{"XParameterCommandURL", Url::fromText(url)}});
  };
  perform(ClickToAction::phone, "tel:1");
  perform(ClickToAction::sms, "sms:1");
  perform(static_cast<ClickToAction>(0), "tel:2");
  perform(static_cast<ClickToAction>(7), "tel:3");
  actions_->performClickToAction(ClickToAction::phone, {});
  EXPECT_THAT(opened(), ElementsAre("tel:1"));
  EXPECT_THAT(platform_.composers->messages, SizeIs(1));
  EXPECT_THAT(happened(), ElementsAre("willLeaveApplication"));
}

// A creative's video of two seconds, and how it stands.
class ClickVideoTest : public ClickActionsTest {
 protected:
  ClickVideoTest() { (*platform_.moviePlayers->movies)[url] = {.duration = 2}; }

  void playVideo(const char* video = url) {
    actions_->handlePlayVideoWithURL(Url::fromText(video));
    platform_.runLoop->advance(Seconds{0.5});
  }
  [[nodiscard]] bool isPlaying() const {
    const auto player = platform_.moviePlayers->last();
    return player && player->playbackState() == MoviePlaybackState::playing;
  }
  static constexpr const char* url = "http://cdn.example/v.mp4";
};

TEST_F(ClickVideoTest, IsPresentedByWhoeverIsInFront) {
  using enum MRAIDState;
  constexpr auto inlined = PlacementType::inlined;
  constexpr auto interstitial = PlacementType::interstitial;
  const std::tuple<MRAIDState, PlacementType, MobileAdTypes, const char*> rows[] = {
      {normal, inlined, MobileAdTypes::banner, "root"},
      {normal, interstitial, MobileAdTypes::interstitial, "current"},
      {normal, interstitial, MobileAdTypes::banner, "root"},
      {expanded, inlined, MobileAdTypes::banner, "expanded"}};
  for (const auto& [state, placement, type, presenter] : rows) {
    view_.mraidState = state;
    view_.placement = placement;
    view_.type = type;
    playVideo();
    EXPECT_EQ(presenters(), presenter);
    EXPECT_EQ(isPlaying(), state == normal) << "above an expanded ad the user starts it";
    EXPECT_TRUE(platform_.moviePlayers->last()->isPreparedToPlay());
    EXPECT_EQ(platform_.moviePlayers->last()->frame(), window_->bounds());
    EXPECT_TRUE(platform_.moviePlayers->last()->nearestController()->cancelOperation());
    EXPECT_EQ(presenters(), "");
    EXPECT_FALSE(isPlaying());
  }
  EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(ClickVideoTest, EndsByItselfByItsButtonAndByAnError) {
  playVideo();
  EXPECT_EQ(presenters(), "root");
  platform_.runLoop->advance(Seconds{2});
  EXPECT_EQ(presenters(), "");

  playVideo();
  const auto& onVideo = platform_.moviePlayers->last()->subviews();
  ASSERT_THAT(onVideo, SizeIs(1));
  dynamic_cast<Button&>(*onVideo.front()).press();
  EXPECT_EQ(presenters(), "");
  EXPECT_FALSE(isPlaying());

  for (const char* unplayable : {"http://cdn.example/none.mp4", "file:///etc/passwd", "foo:bar"}) {
    playVideo(unplayable);
    EXPECT_EQ(presenters(), "") << unplayable;
  }
  EXPECT_THAT(platform_.log->messages(), Contains("Video: The video cannot be played."));
}

TEST_F(ClickVideoTest, LeavesTheWholeScreenWithItsController) {
  playVideo();
  const auto player = platform_.moviePlayers->last();
  player->setFullscreen(true);
  EXPECT_EQ(player->superview(), window_.get());
  EXPECT_TRUE(window_->topViewController()->cancelOperation());
  EXPECT_EQ(presenters(), "");
  EXPECT_EQ(player->window(), nullptr);
}

TEST_F(ClickVideoTest, WithoutAPlaceOrAUrlNothingPlays) {
  playVideo("");
  EXPECT_EQ(platform_.moviePlayers->last(), nullptr);
  view_.root = nullptr;
  playVideo();
  EXPECT_FALSE(isPlaying());
  const auto elsewhere = std::make_shared<ViewController>();  // in no window
  view_.root = elsewhere.get();
  playVideo();
  EXPECT_FALSE(isPlaying());
  EXPECT_EQ(presenters(), "");
}

TEST_F(ClickActionsTest, WithoutAWindowNothingIsShown) {
  view_.slot->shouldOpenClickThroughURLInAppBrowser = true;
  const auto adrift = std::make_shared<ViewController>();  // its view is in no window
  for (ViewController* presenter : {static_cast<ViewController*>(nullptr), adrift.get()}) {
    view_.current = view_.root = view_.expanded = presenter;
    for (const auto state : {MRAIDState::normal, MRAIDState::expanded, MRAIDState::loading}) {
      view_.mraidState = state;
      actions_->sendSMSWithUrl(Url::fromText("sms:1"));
      actions_->sendEmailWithUrl(Url::fromText("mailto:a@b"));
      actions_->createCalendarEvent(eventText);
      actions_->handlePlayVideoWithURL(Url::fromText("http://cdn.example/v.mp4"));
      actions_->openUrlInBrowser(Url::fromText("http://click.example/"));
      platform_.runLoop->advance(Seconds{1});
      EXPECT_EQ(platform_.composers->lastSheet(), nullptr) << "nobody keeps it";
      EXPECT_EQ(adrift->presentedViewController(), nullptr);
      EXPECT_FALSE(actions_->appBrowserOpen());
    }
  }
}

TEST_F(ClickVideoTest, NothingStaysOnTheScreenBeyondItsAd) {
  view_.slot->shouldOpenClickThroughURLInAppBrowser = true;
  platform_.http->answerWith("http://click.example/", "text/html", "<p></p>");
  platform_.http->answerWith("http://store.example/id1", "text/html", "<p></p>");
  const auto with = [](void (ClickActions::*open)(const Url&), const char* clicked) {
    return [open, clicked](ClickActions& actions) { (actions.*open)(Url::fromText(clicked)); };
  };
  const std::function<void(ClickActions&)> rows[] = {
      with(&ClickActions::sendSMSWithUrl, "sms:1"),
      with(&ClickActions::sendEmailWithUrl, "mailto:a@b.example"),
      with(&ClickActions::handlePlayVideoWithURL, url),
      with(&ClickActions::openUrlInBrowser, "http://click.example/"),
      with(&ClickActions::openUrlInBrowser, "http://store.example/id1"),
      [](ClickActions& actions) { actions.createCalendarEvent(eventText); }};
  for (const bool ends : {true, false}) {
    for (const auto& open : rows) {
      SCOPED_TRACE(&open - rows);
      open(*actions_);
      platform_.runLoop->advance(Seconds{0.6});
      EXPECT_NE(presenters(), "");
      if (ends) {
        actions_->end();
      } else {
        actions_ = ClickActions::create(runtime_.environment(), view_);
      }
      EXPECT_EQ(presenters(), "");
      settle();
      happened();
    }
  }
}

TEST_F(ClickActionsTest, AViewThatHasEndedOrIsGoneIsNotAskedAgain) {
  view_.slot->shouldOpenClickThroughURLInAppBrowser = true;
  actions_->openUrlInBrowser(Url::fromText("http://click.example/"));
  actions_->createCalendarEvent(eventText);
  actions_->end();
  settle();
  EXPECT_EQ(presenters(), "");
  EXPECT_EQ(platform_.composers->lastSheet(), nullptr);
  actions_->openUrlInBrowser(Url::fromText("http://click.example/"));
  actions_->createCalendarEvent(eventText);
  actions_.reset();
  settle();
  EXPECT_EQ(presenters(), "");
  EXPECT_THAT(happened(), ElementsAre("asked 6", "asked 6"));
}

}  // namespace
}  // namespace tavo::test
