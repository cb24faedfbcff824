#include <cstdio>
#include <cstdlib>
#include <random>

#include <tavo/MoviePlayer.h>

#include "Contract/MoviePlayerRig.h"
#include "Scene/Window.h"
#include "Support/ScreenPointer.h"

namespace tavo::test {
namespace {

constexpr double nearly = 0.35;  // seconds; a picture more or less, and the time to ask

std::string nameOf(MoviePlaybackState state) {
  static const char* const names[] = {"stopped",     "playing", "paused",
                                      "interrupted", "forward", "backward"};
  return names[static_cast<int>(state)];
}

// Writes down what it hears, and whether it was inside a call to the player.
class Recorder : public MoviePlayerClient {
 public:
  void movieDurationAvailable(MoviePlayer& player) override {
    EXPECT_TRUE(player.isPreparedToPlay());
    note("duration");
  }
  void moviePlaybackStateDidChange(MoviePlayer& player) override {
    note(nameOf(player.playbackState()));
  }
  void moviePlaybackDidFinish(MoviePlayer&, MovieFinishReason reason,
                              const std::optional<Error>& error) override {
    EXPECT_EQ(error.has_value(), reason == MovieFinishReason::playbackError);
    note(error ? "error " + std::to_string(error->code) : "ended");
  }
  void movieDidEnterFullscreen(MoviePlayer&) override { note("enter"); }
  void movieDidExitFullscreen(MoviePlayer&) override { note("exit"); }

  bool insideCall = false;
  std::string atEvent;  // what makes `act` run
  std::function<void()> act;
  Lines events;

 private:
  void note(const std::string& event) {
    events.push_back(insideCall ? event + " inside" : event);
    if (event == atEvent && act) act();
  }
};

template <typename Rig>
class MoviePlayerContractTest : public testing::Test {
 protected:
  void SetUp() override { makePlayer(); }

  void makePlayer() {
    client_ = std::make_shared<Recorder>();
    player_ = rig_.factory().create({0, 0, 320, 180});
    ASSERT_NE(player_, nullptr);
    player_->addClient(client_);
  }

  // Calls the player, and gives reports that come too early their mark.
  void call(const std::function<void(MoviePlayer&)>& operation) {
    client_->insideCall = true;
    operation(*player_);
    client_->insideCall = false;
  }
  void setContent(Movie movie) {
    call([&](MoviePlayer& player) { player.setContentUrl(rig_.url(movie)); });
  }
  void play(Movie movie) {
    setContent(movie);
    play();
  }
  void play() { call(&MoviePlayer::play); }
  void pause() { call(&MoviePlayer::pause); }
  void stop() { call(&MoviePlayer::stop); }
  void prepare() { call(&MoviePlayer::prepareToPlay); }
  void setTime(double seconds) {
    call([&](MoviePlayer& player) { player.setCurrentPlaybackTime(seconds); });
    EXPECT_NEAR(player_->currentPlaybackTime(), seconds, nearly);
  }
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    rig_.runUntil(done);
    return done();
  }
  [[nodiscard]] bool runUntilEvent(const std::string& event) {
    return runUntil([&] { return !events().empty() && events().back() == event; });
  }
  [[nodiscard]] bool runUntilTime(double seconds) {
    return runUntil([&] { return player_->currentPlaybackTime() >= seconds; });
  }
  // Long enough for whatever was under way to be heard of, by the measure of another content.
  void settle() {
    const auto other = rig_.factory().create({0, 0, 16, 9});
    const auto done = std::make_shared<Recorder>();
    other->addClient(done);
    other->shouldAutoplay = false;
    other->setContentUrl(rig_.url(Movie::whole));
    other->prepareToPlay();
    EXPECT_TRUE(runUntil([&] { return !done->events.empty(); }));
  }
  [[nodiscard]] Lines& events() { return client_->events; }

  Rig rig_;
  std::shared_ptr<Recorder> client_;
  std::shared_ptr<MoviePlayer> player_;
};

using Rigs = testing::Types<HeadlessMovieRig, GtkMovieRig>;
TYPED_TEST_SUITE(MoviePlayerContractTest, Rigs);

TYPED_TEST(MoviePlayerContractTest, AContentIsPreparedPlayedPausedAndStopped) {
  auto& player = *this->player_;
  this->setContent(Movie::whole);
  player.shouldAutoplay = false;
  this->prepare();
  EXPECT_FALSE(player.isPreparedToPlay());
  EXPECT_EQ(player.duration(), 0);
  ASSERT_TRUE(this->runUntilEvent("duration"));
  EXPECT_NEAR(player.duration(), movieSeconds, nearly);
  this->settle();
  EXPECT_EQ(player.playbackState(), MoviePlaybackState::stopped);
  EXPECT_EQ(player.currentPlaybackTime(), 0);

  this->play();
  ASSERT_TRUE(this->runUntilTime(0.5));
  this->pause();
  ASSERT_TRUE(this->runUntilEvent("paused"));
  const double paused = player.currentPlaybackTime();
  this->settle();
  EXPECT_EQ(player.currentPlaybackTime(), paused);
  this->play();
  ASSERT_TRUE(this->runUntilTime(paused + 0.5));

  this->stop();
  EXPECT_FALSE(player.isPreparedToPlay());
  EXPECT_EQ(player.currentPlaybackTime(), 0);
  ASSERT_TRUE(this->runUntilEvent("stopped"));
  this->settle();
  EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "paused", "playing", "stopped"));
}

TYPED_TEST(MoviePlayerContractTest, PlaysToItsEndAndOnceMoreFromItsStart) {
  for (const Movie movie : {Movie::whole, Movie::withoutRanges}) {
    this->makePlayer();
    this->play(movie);
    ASSERT_TRUE(this->runUntilEvent("ended"));
    EXPECT_EQ(this->player_->currentPlaybackTime(), this->player_->duration());
    EXPECT_TRUE(this->player_->isPreparedToPlay());
    EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "paused", "ended"));
    this->play();
    ASSERT_TRUE(this->runUntilEvent("playing"));
    EXPECT_LT(this->player_->currentPlaybackTime(), movieSeconds / 2);
    ASSERT_TRUE(this->runUntilEvent("ended"));
    EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "paused", "ended", "playing",
                                            "paused", "ended"));
  }
}

TYPED_TEST(MoviePlayerContractTest, WhatCannotBePlayedFinishesWithItsReason) {
  struct Case {
    const char* name;
    Movie movie;
    Lines events;
  };
  const Case cases[] = {
      {"missing", Movie::missing, {"error 2"}},
      {"a picture", Movie::picture, {"error 2"}},
      {"no decoder", Movie::unknownCodec, {"error 2"}},
      {"a local file", Movie::localFile, {"error 2"}},
      {"a silent server", Movie::silent, {"error 3"}},
      {"a cut file", Movie::cut, {"duration", "error 4"}},
      {"a server that stalls", Movie::stalls, {"duration", "error 3"}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    this->events().clear();
    this->play(test.movie);
    EXPECT_TRUE(this->runUntilEvent(test.events.back()));
    // How far it came is the platform's affair.
    std::erase_if(this->events(),
                  [](const auto& event) { return event == "playing" || event == "stopped"; });
    EXPECT_EQ(this->events(), test.events);
    EXPECT_EQ(this->player_->playbackState(), MoviePlaybackState::stopped);
    EXPECT_FALSE(this->player_->isPreparedToPlay());
    EXPECT_EQ(this->player_->currentPlaybackTime(), 0);
    EXPECT_EQ(this->player_->duration(), 0);
  }
  this->events().clear();
  this->play(Movie::whole);
  EXPECT_TRUE(this->runUntilEvent("playing")) << "a failure is forgotten with its content";
}

TYPED_TEST(MoviePlayerContractTest, StartsWhereItWasToldToBeforeItWasPrepared) {
  this->setContent(Movie::whole);
  this->setTime(3);
  this->prepare();
  double earliest = movieSeconds;
  EXPECT_TRUE(this->runUntil([&] {
    earliest = std::min(earliest, this->player_->currentPlaybackTime());
    return !this->events().empty() && this->events().back() == "ended";
  }));
  EXPECT_GE(earliest, 3 - nearly);
  EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "paused", "ended"));
}

TYPED_TEST(MoviePlayerContractTest, TheTimeCanBeSetAtAnyTime) {
  this->play(Movie::whole);
  ASSERT_TRUE(this->runUntilEvent("playing"));
  this->setTime(2);
  ASSERT_TRUE(this->runUntilTime(2.3));
  this->pause();
  ASSERT_TRUE(this->runUntilEvent("paused"));
  this->setTime(1);
  this->settle();
  EXPECT_NEAR(this->player_->currentPlaybackTime(), 1, nearly);
  this->play();
  ASSERT_TRUE(this->runUntilTime(1.5));
  this->setTime(0);
  this->setTime(3.5);
  ASSERT_TRUE(this->runUntilEvent("ended"));
  this->setTime(3);
  this->play();
  ASSERT_TRUE(this->runUntilEvent("playing"));
  EXPECT_GE(this->player_->currentPlaybackTime(), 3 - nearly);
  ASSERT_TRUE(this->runUntilEvent("ended"));
  EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "paused", "playing", "paused",
                                          "ended", "playing", "paused", "ended"));
}

TYPED_TEST(MoviePlayerContractTest, DraggingPassesThroughTheStatesOfSeeking) {
  this->play(Movie::whole);
  ASSERT_TRUE(this->runUntilTime(0.3));
  this->call([&](MoviePlayer& player) { this->rig_.drag(player, 2); });
  ASSERT_TRUE(this->runUntil([&] { return this->events().size() == 4; }));
  this->call([&](MoviePlayer& player) {
    this->rig_.drag(player, 1.5);
    this->rig_.drag(player, 1);
  });
  ASSERT_TRUE(this->runUntilEvent("ended"));
  EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "forward", "playing", "backward",
                                          "playing", "paused", "ended"));
}

TYPED_TEST(MoviePlayerContractTest, APauseWhileItIsBeingPreparedHolds) {
  this->setContent(Movie::whole);
  this->call([](MoviePlayer& player) {
    player.prepareToPlay();
    player.pause();
  });
  ASSERT_TRUE(this->runUntilEvent("duration"));
  this->settle();
  EXPECT_EQ(this->player_->playbackState(), MoviePlaybackState::stopped);
  this->play();
  EXPECT_TRUE(this->runUntilEvent("playing"));
}

TYPED_TEST(MoviePlayerContractTest, AReplacedContentIsNotReported) {
  this->play(Movie::missing);
  this->play(Movie::silent);
  this->play(Movie::whole);
  ASSERT_TRUE(this->runUntilEvent("playing"));
  this->setContent(Movie::missing);
  EXPECT_EQ(this->player_->contentUrl(), this->rig_.url(Movie::missing));
  EXPECT_EQ(this->player_->duration(), 0);
  this->settle();
  EXPECT_THAT(this->events(), ElementsAre("duration", "playing", "stopped"));
}

TYPED_TEST(MoviePlayerContractTest, WithoutAContentNothingIsPlayed) {
  this->call([](MoviePlayer& player) {
    player.play();
    player.pause();
    player.setContentUrl({});
    player.prepareToPlay();
    player.play();
    player.stop();
  });
  this->settle();
  EXPECT_THAT(this->events(), IsEmpty());
  EXPECT_FALSE(this->player_->isPreparedToPlay());
}

TYPED_TEST(MoviePlayerContractTest, ClientsAreToldInTheirOrderAndMayGo) {
  const auto second = std::make_shared<Recorder>();
  auto third = std::make_shared<Recorder>();
  this->player_->addClient(second);
  this->player_->addClient(third);
  this->client_->atEvent = "duration";
  this->client_->act = [&] {
    EXPECT_THAT(second->events, IsEmpty());
    third.reset();
  };
  second->atEvent = "duration";
  second->act = [&] { this->player_->removeClient(*second); };
  this->play(Movie::whole);
  ASSERT_TRUE(this->runUntilEvent("playing"));
  EXPECT_THAT(second->events, ElementsAre("duration"));
}

TYPED_TEST(MoviePlayerContractTest, APlayerMayGoInTheMiddleOfAnyReport) {
  for (const std::string event : {"duration", "playing", "paused", "ended", "error 2"}) {
    SCOPED_TRACE(event);
    this->makePlayer();
    const std::weak_ptr<MoviePlayer> player = this->player_;
    this->client_->atEvent = event;
    this->client_->act = [this] { this->player_.reset(); };
    this->play(event == "error 2" ? Movie::missing : Movie::whole);
    ASSERT_TRUE(this->runUntilEvent(event));
    this->settle();
    EXPECT_TRUE(player.expired());
    EXPECT_EQ(this->events().back(), event) << "nothing comes of a player that is gone";
  }
}

// Another order each time; TAVO_SEED=<number> repeats one.
TYPED_TEST(MoviePlayerContractTest, AnyOrderOfCallsEndsWithThePlayer) {
  const char* const given = std::getenv("TAVO_SEED");
  const unsigned seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                                         : std::random_device{}();
  std::printf("TAVO_SEED=%u\n", seed);
  std::fflush(stdout);
  std::mt19937 random{seed};
  const auto choose = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  const std::function<void(MoviePlayer&)> calls[] = {
      [&](MoviePlayer& player) { player.setContentUrl(this->rig_.url(Movie{choose(9)})); },
      [&](MoviePlayer& player) { player.setContentUrl(this->rig_.url(Movie::whole)); },
      &MoviePlayer::prepareToPlay,
      &MoviePlayer::play,
      &MoviePlayer::play,
      &MoviePlayer::pause,
      &MoviePlayer::stop,
      [&](MoviePlayer& player) { player.setCurrentPlaybackTime(choose(6) - 0.5); },
      [&](MoviePlayer& player) { this->rig_.drag(player, choose(6) - 0.5); },
      [&](MoviePlayer& player) {
        player.setFrame({0, 0, choose(3) * 300.0, choose(3) * 200.0});
      },
      [&](MoviePlayer& player) { player.setFullscreen(choose(2) == 0); },
      [&](MoviePlayer& player) { player.shouldAutoplay = choose(2) == 0; }};
  for (int round = 0; round < 6; ++round) {
    this->makePlayer();
    const std::weak_ptr<MoviePlayer> player = this->player_;
    for (int step = 0; step < 25; ++step) {
      this->call(calls[choose(std::size(calls))]);
      for (int turns = choose(2) * choose(25); turns > 0; --turns) {
        int turn = 0;
        EXPECT_TRUE(this->runUntil([&] { return ++turn > 1; }));
      }
      const double length = this->player_->duration();
      EXPECT_EQ(this->player_->isPreparedToPlay(), length > 0);
      EXPECT_LE(this->player_->currentPlaybackTime(), std::max(length, 6.0) + nearly);
    }
    this->player_.reset();
    const Lines told = this->events();
    EXPECT_TRUE(player.expired());
    this->settle();
    EXPECT_EQ(this->events(), told) << "nothing comes of a player that is gone";
    EXPECT_THAT(told, Not(testing::Contains(testing::HasSubstr("inside"))));
  }
  EXPECT_TRUE(this->runUntil([&] { return !this->rig_.isAnythingLeft(); }));
}

TYPED_TEST(MoviePlayerContractTest, FullScreenIsAboveEverythingAndEndsAtTheOldPlace) {
  const auto enter = [](MoviePlayer& player) { player.setFullscreen(true); };
  const auto leave = [](MoviePlayer& player) { player.setFullscreen(false); };
  this->call(enter);
  EXPECT_FALSE(this->player_->isFullscreen()) << "there is no window";

  const auto window = std::make_shared<Window>(Rect{0, 0, 800, 600});
  const auto place = std::make_shared<View>(Rect{10, 20, 400, 300});
  window->addSubview(place);
  place->addSubview(this->player_);
  this->player_->setAutoresizingMask(flexibleTopMargin);
  EXPECT_EQ(this->player_->controlStyle(), MovieControlStyle::embedded);
  this->call(enter);
  this->call(enter);
  EXPECT_EQ(window->subviews().back(), this->player_);
  EXPECT_EQ(this->player_->frame(), window->bounds());
  window->setFrame({0, 0, 600, 800});
  EXPECT_EQ(this->player_->frame(), window->bounds());
  EXPECT_TRUE(this->runUntilEvent("enter"));

  this->call(leave);
  EXPECT_FALSE(this->player_->isFullscreen());
  EXPECT_EQ(this->player_->superview(), place.get());
  EXPECT_EQ(this->player_->frame(), (Rect{0, 0, 320, 180}));
  EXPECT_EQ(this->player_->autoresizingMask(), static_cast<unsigned>(flexibleTopMargin));
  EXPECT_TRUE(this->runUntilEvent("exit"));
  EXPECT_THAT(this->events(), ElementsAre("enter", "exit"));

  this->call(enter);
  place->removeFromSuperview();
  this->call(leave);
  EXPECT_EQ(this->player_->superview(), place.get()) << "its place may be elsewhere by now";
}

// A window with nothing but a player in it, on a screen with a mouse.
class PlayerWindow {
 public:
  explicit PlayerWindow(MoviePlayer& player) {
    gtk_window_set_decorated(GTK_WINDOW(window_), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(window_), 640, 360);
    GtkWidget* const widget = dynamic_cast<gtk::NativeView&>(player).widget();
    scale_ = GtkMovieRig::scaleBelow(widget);
    gtk_window_set_child(GTK_WINDOW(window_), widget);
    gtk_window_present(GTK_WINDOW(window_));
  }
  ~PlayerWindow() {
    gtk_window_set_child(GTK_WINDOW(window_), nullptr);
    gtk_window_destroy(GTK_WINDOW(window_));
  }
  PlayerWindow(const PlayerWindow&) = delete;
  PlayerWindow& operator=(const PlayerWindow&) = delete;

  [[nodiscard]] bool isUnderPointer() const {
    return (gtk_widget_get_state_flags(scale_) & GTK_STATE_FLAG_PRELIGHT) != 0;
  }
  [[nodiscard]] double value() const { return gtk_range_get_value(GTK_RANGE(scale_)); }
  // To a part of the bar's length.
  void point(double part) {
    graphene_rect_t place;
    if (!gtk_widget_compute_bounds(scale_, window_, &place)) return;
    double x = 0;
    double y = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(window_), &x, &y);
    pointer.moveTo(static_cast<int>(x + place.origin.x + place.size.width * part),
                   static_cast<int>(y + place.origin.y + place.size.height / 2));
  }

  ScreenPointer pointer;

 private:
  GtkWidget* window_ = gtk_window_new();
  GtkWidget* scale_ = nullptr;
};

TEST(GtkMoviePlayer, ADragOverTheBarIsOneSeek) {
  GtkMovieRig rig;
  const auto client = std::make_shared<Recorder>();
  const auto player = rig.factory().create({0, 0, 640, 360});
  player->addClient(client);
  PlayerWindow window{*player};
  if (!window.pointer.works()) GTEST_SKIP() << "libXtst.so.6 is not installed";
  player->setContentUrl(rig.url(Movie::whole));
  player->play();
  const auto runUntilEvent = [&](const char* event) {
    rig.runUntil([&] { return !client->events.empty() && client->events.back() == event; });
  };
  runUntilEvent("playing");
  player->pause();
  runUntilEvent("paused");
  client->events.clear();
  int step = 0;
  rig.runUntil([&] {
    window.point(++step % 2 == 0 ? 0.4 : 0.41);
    return window.isUnderPointer();
  });
  window.pointer.press();
  for (const double part : {0.5, 0.6, 0.7, 0.8}) {
    const double before = window.value();
    window.point(part);
    rig.runUntil([&] { return window.value() > before; });
  }
  EXPECT_THAT(client->events, IsEmpty()) << "the hand is still on it";
  window.pointer.release();
  runUntilEvent("paused");
  EXPECT_THAT(client->events, ElementsAre("forward", "paused"));
  EXPECT_GT(player->currentPlaybackTime(), movieSeconds * 0.7);
}

TEST(GtkMoviePlayer, NothingButTheWebIsPlayed) {
  GtkMovieRig rig;
  const auto client = std::make_shared<Recorder>();
  const auto player = rig.factory().create({0, 0, 320, 180});
  player->addClient(client);
  player->setContentUrl(Url::parse("v4l2:///dev/video0"));
  player->play();
  rig.runUntil([&] { return !client->events.empty(); });
  EXPECT_THAT(client->events, ElementsAre("error 2"));
}

// Only a real server can refuse: the video is not lost, it begins again.
TEST(GtkMoviePlayer, AServerThatCannotStartInTheMiddleStartsAgain) {
  GtkMovieRig rig;
  const auto client = std::make_shared<Recorder>();
  const auto player = rig.factory().create({0, 0, 320, 180});
  player->addClient(client);
  player->setContentUrl(rig.url(Movie::withoutRanges));
  player->setCurrentPlaybackTime(2);
  player->play();
  rig.runUntil([&] { return player->currentPlaybackTime() > 2.5; });
  player->setCurrentPlaybackTime(0.5);
  rig.runUntil([&] { return !client->events.empty() && client->events.back() == "ended"; });
  EXPECT_THAT(client->events, ElementsAre("duration", "playing", "paused", "ended"));
}

}  // namespace
}  // namespace tavo::test
