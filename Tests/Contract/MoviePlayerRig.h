#pragma once

#include <gtk/gtk.h>

#include "Gtk/Modules/GtkVideoModule.h"
#include "Gtk/Scene/NativeView.h"
#include "Gtk/Services/GtkLog.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessMoviePlayerFactory.h"
#include "Headless/HeadlessRunLoop.h"
#include "Support/AdServerThread.h"
#include "Support/HostLoop.h"
#include "Support/HostileServer.h"
#include "Support/Places.h"
#include "Support/PlayerThreads.h"
#include "Support/Testing.h"

namespace tavo::test {

// The contents that both platforms are given. Each that plays lasts `movieSeconds`.
enum class Movie {
  whole,
  withoutRanges,  // from a server that cannot start in the middle
  missing,
  picture,       // sent as a video
  unknownCodec,  // for which there is no decoder
  silent,        // the server takes the request and says nothing
  cut,           // half of it, with an honest length
  stalls,        // half of it, then silence
  localFile,
};

constexpr double movieSeconds = 4;

// Short, so that what waits for them is soon over.
inline Limits movieLimits() {
  Limits limits;
  limits.firstFrameTimeout = Seconds{5};
  limits.stallTimeout = Seconds{5};
  return limits;
}

class HeadlessMovieRig {
 public:
  HeadlessMovieRig() {
    auto& movies = *factory_.movies;
    movies[url(Movie::whole).text()] = {.duration = movieSeconds};
    movies[url(Movie::withoutRanges).text()] = {.duration = movieSeconds};
    movies[url(Movie::picture).text()] = {.hasVideo = false};
    movies[url(Movie::unknownCodec).text()] = {.hasVideo = false};
    movies[url(Movie::silent).text()] = {.arrives = false};
    movies[url(Movie::cut).text()] = {.duration = movieSeconds, .cutAt = movieSeconds / 2};
    movies[url(Movie::stalls).text()] = {.duration = movieSeconds, .stallAt = movieSeconds / 2};
  }
  MoviePlayerFactory& factory() { return factory_; }
  [[nodiscard]] static Url url(Movie movie) {
    if (movie == Movie::localFile) return Url::parse("file:///clip.mp4");
    return Url::parse("http://cdn.example/" + std::to_string(static_cast<int>(movie)));
  }
  void runUntil(const std::function<bool()>& done) {
    for (int step = 0; step < 1000 && !done(); ++step) loop_->advance(Seconds{0.1});
  }
  [[nodiscard]] static bool isAnythingLeft() { return false; }
  static void drag(MoviePlayer& player, double seconds) {
    static_cast<headless::HeadlessMoviePlayer&>(player).seekByHand(seconds);
  }

 private:
  std::shared_ptr<headless::HeadlessRunLoop> loop_ = std::make_shared<headless::HeadlessRunLoop>();
  headless::HeadlessMoviePlayerFactory factory_{loop_, movieLimits()};
};

// One engine for all tests of the process, as in a host.
class GtkMovieRig {
 public:
  MoviePlayerFactory& factory() { return engine().module; }
  [[nodiscard]] static RunLoop& loop() { return *engine().loop; }
  [[nodiscard]] static Url url(Movie movie) {
    if (movie == Movie::localFile) return Url::parse(std::string{"file://"} + clipPath());
    if (movie == Movie::whole)
      return Url::parse(engine().server.url("/assets/vast-preroll/clip.mp4"));
    return Url::parse(engine().hostile.url(path(movie)));
  }
  void runUntil(const std::function<bool()>& done) { test::runUntil(done); }
  // Threads of players: they end on a thread of their own.
  [[nodiscard]] static bool isAnythingLeft() { return playerThreads() > 0; }
  static void drag(MoviePlayer& player, double seconds) {
    GtkWidget* scale = scaleBelow(dynamic_cast<gtk::NativeView&>(player).widget());
    ASSERT_NE(scale, nullptr);
    gboolean handled = FALSE;
    g_signal_emit_by_name(scale, "change-value", GTK_SCROLL_JUMP, seconds, &handled);
  }

  static GtkWidget* scaleBelow(GtkWidget* top) {
    for (GtkWidget* child = gtk_widget_get_first_child(top); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
      if (GTK_IS_SCALE(child)) return child;
      if (GtkWidget* deeper = scaleBelow(child)) return deeper;
    }
    return nullptr;
  }

 private:
  struct Engine {
    Engine() {
      const std::string clip = contentsOf(clipPath());
      const auto sent = [](const std::string& body) {
        return PlainAnswer{.body = body, .contentType = "video/mp4"};
      };
      const std::string half = clip.substr(0, clip.size() / 2);
      std::string unknown = clip;
      unknown.replace(unknown.find("avc1"), 4, "zzzz");
      hostile.on(path(Movie::withoutRanges), sent(clip));
      hostile.on(path(Movie::picture),
                 sent(contentsOf(sampleCampaigns() + "/image-banner/banner.png")));
      hostile.on(path(Movie::unknownCodec), sent(unknown));
      hostile.on(path(Movie::silent), NeverAnswer{});
      hostile.on(path(Movie::cut), sent(half));
      hostile.on(path(Movie::stalls), StallInBody{.body = half, .promisedBytes = clip.size()});
      playOnce();
    }

    // The first film of a process brings the framework from the disk, which takes as long as it
    // takes.
    void playOnce() {
      Limits patience;
      patience.firstFrameTimeout = Seconds{60};
      gtk::GtkVideoModule first{{.runLoop = loop,
                                 .log = std::make_shared<gtk::GtkLog>(),
                                 .userAgent = {},
                                 .limits = patience}};
      const auto film = first.create({0, 0, 320, 180});
      film->setContentUrl(Url::parse(server.url("/assets/vast-preroll/clip.mp4")));
      film->prepareToPlay();
      EXPECT_TRUE(test::runUntil([&] { return film->isPreparedToPlay(); }));
    }

    HostileServer hostile;
    AdServerThread server{sampleCampaigns()};
    std::shared_ptr<gtk::GtkRunLoop> loop = std::make_shared<gtk::GtkRunLoop>();
    gtk::GtkVideoModule module{{.runLoop = loop,
                                .log = std::make_shared<gtk::GtkLog>(),
                                .userAgent = [] { return std::string{"Test/1"}; },
                                .limits = movieLimits()}};
  };

  static Engine& engine() {
    static const bool toolkit = gtk_init_check() != FALSE;
    EXPECT_TRUE(toolkit);
    static auto& engine = *new Engine;
    return engine;
  }
  static std::string clipPath() { return sampleCampaigns() + "/vast-preroll/clip.mp4"; }
  static std::string path(Movie movie) {
    return "/" + std::to_string(static_cast<int>(movie)) + ".mp4";
  }
};

}  // namespace tavo::test
