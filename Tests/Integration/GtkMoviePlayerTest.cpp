#include <gst/gst.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Contract/MoviePlayerRig.h"
#include "Support/MovieRecorder.h"
#include "Support/ScreenPointer.h"

namespace tavo::test {
namespace {

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

TEST(GtkMoviePlayerTest, ADragOverTheBarIsOneSeek) {
  GtkMovieRig rig;
  const auto client = std::make_shared<MovieRecorder>();
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

TEST(GtkMoviePlayerTest, NothingButTheWebIsPlayed) {
  GtkMovieRig rig;
  const auto client = std::make_shared<MovieRecorder>();
  const auto player = rig.factory().create({0, 0, 320, 180});
  player->addClient(client);
  player->setContentUrl(Url::parse("v4l2:///dev/video0"));
  player->play();
  rig.runUntil([&] { return !client->events.empty(); });
  EXPECT_THAT(client->events, ElementsAre("error 2"));
}

// Hears of the first pipeline that is made for a film, on whatever thread that happens. The
// framework must be there already.
class Pipeline {
 public:
  Pipeline()
      : signal_{g_signal_lookup("deep-element-added", g_type_from_name("GstBin"))},
        hook_{g_signal_add_emission_hook(signal_, 0, &added, this, nullptr)} {}
  ~Pipeline() {
    g_signal_remove_emission_hook(signal_, hook_);
    if (player_ != nullptr) g_object_unref(player_);
  }
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  void say(const char* signal, int value) { g_signal_emit_by_name(player_, signal, value); }
  [[nodiscard]] bool isThere() const { return player_ != nullptr; }

 private:
  static gboolean added(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                        gpointer self) {
    gpointer bin = g_value_get_object(values);
    if (g_signal_lookup("video-tags-changed", G_OBJECT_TYPE(bin)) == 0) return TRUE;
    static_cast<Pipeline*>(self)->player_ = g_object_ref(bin);
    return FALSE;  // enough
  }

  guint signal_;
  gulong hook_;
  std::atomic<gpointer> player_ = nullptr;
};

// By itself it happens while one film takes the place of another, once in hundreds of times.
TEST(GtkMoviePlayerTest, TagsOfAStreamThatIsNotThereAreNoMatter) {
  GtkMovieRig rig;
  const auto client = std::make_shared<MovieRecorder>();
  const auto player = rig.factory().create({0, 0, 320, 180});
  Pipeline pipeline;
  player->addClient(client);
  player->setContentUrl(rig.url(Movie::whole));
  player->play();
  rig.runUntil([&] { return !client->events.empty() && client->events.back() == "playing"; });
  ASSERT_TRUE(pipeline.isThere());
  for (const char* kind : {"video-tags-changed", "audio-tags-changed", "text-tags-changed"}) {
    pipeline.say(kind, 7);
  }
  rig.runUntil([&] { return client->events.back() == "ended"; });
  EXPECT_THAT(client->events, ElementsAre("duration", "playing", "paused", "ended"));
}

// Only a real server can refuse: the video is not lost, it begins again.
TEST(GtkMoviePlayerTest, AServerThatCannotStartInTheMiddleStartsAgain) {
  GtkMovieRig rig;
  const auto client = std::make_shared<MovieRecorder>();
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

// Given up between its answer and the turn in which the film hears of it, a request ended the
// process: one in two hundred at these moments.
TEST(GtkMoviePlayerTest, AFilmMayGoWhileItsServerAnswers) {
  GtkMovieRig rig;
  constexpr int drops = 300;
  constexpr int moments = 60;  // of a tenth of a millisecond
  for (int drop = 0; drop < drops; ++drop) {
    const auto player = rig.factory().create({0, 0, 320, 180});
    player->setContentUrl(rig.url(Movie::whole));
    player->play();
    bool isOver = false;
    const Timer end =
        rig.loop().after(Seconds{0.002 + drop % moments / 10'000.0}, [&] { isOver = true; });
    rig.runUntil([&] { return isOver; });
    rig.runUntil([&] { return playerThreads() < 4; });
  }
  rig.runUntil([&] { return !rig.isAnythingLeft(); });
  EXPECT_FALSE(rig.isAnythingLeft());
}

// Keeps the source of each new film busy: from its first bytes on, its own thread has the player
// told of something, again and again, until the film is stopped. The framework must be there
// already.
class AskingSource {
 public:
  AskingSource()
      : signal_{g_signal_lookup("deep-element-added", g_type_from_name("GstBin"))},
        hook_{g_signal_add_emission_hook(signal_, 0, &added, &asking_, nullptr)} {}
  ~AskingSource() { g_signal_remove_emission_hook(signal_, hook_); }
  AskingSource(const AskingSource&) = delete;
  AskingSource& operator=(const AskingSource&) = delete;

  // Sources that have begun to ask so far.
  [[nodiscard]] int asking() const { return asking_; }

 private:
  struct Film {
    GObject* pipeline;  // outlives the thread of its source
    std::atomic<int>& asking;
  };

  static gboolean added(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                        gpointer asking) {
    auto* const pipeline = G_OBJECT(g_value_get_object(values));
    auto* const element = GST_ELEMENT(g_value_get_object(values + 2));
    if (g_signal_lookup("source-setup", G_OBJECT_TYPE(pipeline)) == 0) return TRUE;
    if (!GST_OBJECT_FLAG_IS_SET(element, GST_ELEMENT_FLAG_SOURCE)) return TRUE;
    GstPad* const pad = gst_element_get_static_pad(element, "src");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, &ask,
                      new Film{pipeline, *static_cast<std::atomic<int>*>(asking)},
                      [](gpointer film) { delete static_cast<Film*>(film); });
    gst_object_unref(pad);
    return TRUE;
  }

  static GstPadProbeReturn ask(GstPad* pad, GstPadProbeInfo* /*info*/, gpointer data) {
    const auto& film = *static_cast<Film*>(data);
    ++film.asking;
    while (!GST_PAD_IS_FLUSHING(pad)) g_object_notify(film.pipeline, "mute");
    return GST_PAD_PROBE_OK;
  }

  guint signal_;
  gulong hook_;
  std::atomic<int> asking_ = 0;
};

// What is told of a film holds its player, on the thread that tells. One film in fifteen hundred
// was let go at such a moment: its own thread had to end it then, and waited for itself for good.
TEST(GtkMoviePlayerTest, AFilmMayGoWhileItsOwnThreadHoldsIt) {
  GtkMovieRig rig;
  auto& factory = rig.factory();
  constexpr int drops = 8;
  AskingSource source;
  for (int drop = 1; drop <= drops; ++drop) {
    const auto player = factory.create({0, 0, 320, 180});
    player->setContentUrl(rig.url(Movie::whole));
    player->play();
    rig.runUntil([&] { return source.asking() >= drop; });
  }
  rig.runUntil([&] { return !rig.isAnythingLeft(); });
  EXPECT_FALSE(rig.isAnythingLeft());
}

// Keeps the player of each new film from hearing that its pipeline is ready to play, until the film
// has been dropped and what comes of that has had its time.
class LateReport {
 public:
  LateReport()
      : signal_{g_signal_lookup("message", g_type_from_name("GstBus"))},
        hook_{g_signal_add_emission_hook(signal_, 0, &reported, this, nullptr)} {}
  ~LateReport() { g_signal_remove_emission_hook(signal_, hook_); }
  LateReport(const LateReport&) = delete;
  LateReport& operator=(const LateReport&) = delete;

  [[nodiscard]] bool isHeld() const { return held_ > dropped_; }
  void dropped() { ++dropped_; }

 private:
  static gboolean reported(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                           gpointer data) {
    auto& self = *static_cast<LateReport*>(data);
    auto* const message = GST_MESSAGE(g_value_get_boxed(values + 1));
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_STATE_CHANGED) return TRUE;
    GstState before{};
    GstState now{};
    gst_message_parse_state_changed(message, &before, &now, nullptr);
    const bool isFilm = GST_IS_PIPELINE(GST_MESSAGE_SRC(message));
    if (!isFilm || before != GST_STATE_READY || now != GST_STATE_PAUSED) return TRUE;
    const int mine = ++self.held_;
    while (self.dropped_ < mine) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds{200});
    return TRUE;
  }

  guint signal_;
  gulong hook_;
  std::atomic<int> held_ = 0;
  std::atomic<int> dropped_ = 0;
};

// One film in some thousands ended the host so: its player described a film without an address.
TEST(GtkMoviePlayerTest, AFilmMayGoWhileItsPlayerHearsThatItIsReady) {
  GtkMovieRig rig;
  auto& factory = rig.factory();
  LateReport report;
  for (int drop = 0; drop < 3; ++drop) {
    auto player = factory.create({0, 0, 320, 180});
    player->setContentUrl(rig.url(Movie::whole));
    player->play();
    rig.runUntil([&] { return report.isHeld(); });
    ASSERT_TRUE(report.isHeld());
    player.reset();
    report.dropped();
    rig.runUntil([&] { return !rig.isAnythingLeft(); });
    EXPECT_FALSE(rig.isAnythingLeft());
  }
}

}  // namespace
}  // namespace tavo::test
