// Films with wrong bytes on the real media framework, fetched over HTTP as an ad's are, and played
// by the rules of the player. A film ends or plays in time, tells its end once, holds the host's
// loop up for no moment that a person would notice twice, and leaves no pipeline behind.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "Film/FilmServer.h"
#include "Film/FuzzedFilm.h"
#include "Gtk/Services/GtkLog.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Support/PlayerThreads.h"

namespace tavo::fuzz {
namespace {

// In seconds, and generous: the sanitizers and the other programs of the machine take their time.
constexpr double patience = 20;
constexpr double longestTurn = 5;

void fail(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  std::abort();
}

// Turns the loop until `done`; ends the program when that takes too long.
template <typename Done>
void runUntil(const Done& done, const char* complaint) {
  const auto now = [] { return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC; };
  const double end = now() + patience;
  while (!done()) {
    if (now() > end) fail(complaint);
    const bool worked = g_main_context_pending(nullptr) != FALSE;
    const double before = now();
    if (worked) g_main_context_iteration(nullptr, FALSE);
    if (now() - before > longestTurn) fail("The host's loop stood still.");
    if (!worked) g_usleep(1'000);
  }
}

class Client : public MoviePlayerClient {
 public:
  void movieDurationAvailable(MoviePlayer& player) override {
    if (!(player.duration() > 0)) fail("A film of no length is ready.");
    ready = true;
  }
  void moviePlaybackStateDidChange(MoviePlayer&) override {}
  void moviePlaybackDidFinish(MoviePlayer&, MovieFinishReason,
                              const std::optional<Error>&) override {
    ++ends;
  }
  void movieDidEnterFullscreen(MoviePlayer&) override {}
  void movieDidExitFullscreen(MoviePlayer&) override {}
  bool ready = false;
  int ends = 0;
};

struct Stage {
  FilmServer server;
  std::shared_ptr<gtk::MediaEngine> engine = std::make_shared<gtk::MediaEngine>(
      gtk::VideoModuleServices{.runLoop = std::make_shared<gtk::GtkRunLoop>(),
                               .log = std::make_shared<gtk::GtkLog>(),
                               .userAgent = {},
                               .limits = limits()});
  static Limits limits() {
    Limits limits;
    limits.firstFrameTimeout = limits.stallTimeout = Seconds{2};
    return limits;
  }
};

// Never taken down: the framework's threads would outlive it.
Stage& stage() {
  static auto& stage = *new Stage;
  return stage;
}

}  // namespace
}  // namespace tavo::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  g_setenv("G_MESSAGES_DEBUG", "", TRUE);
  // No sound device, whatever this machine has.
  g_setenv("GST_PLUGIN_FEATURE_RANK", "pulsesink:NONE,pipewiresink:NONE,alsasink:NONE", TRUE);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavo;
  using namespace tavo::fuzz;
  stage().server.show(data, size);
  const auto client = std::make_shared<Client>();
  auto film = std::make_shared<FuzzedFilm>(stage().engine);
  film->addClient(client);
  film->setContentUrl(Url::parse(stage().server.url()));
  film->shouldAutoplay = false;
  film->prepareToPlay();
  runUntil([&] { return client->ready || client->ends > 0; }, "Nobody hears of the film.");
  if (client->ready && client->ends == 0) {
    // Most of a length that the film only claims is not waited for.
    film->setCurrentPlaybackTime(film->duration() - 0.1);
    film->play();
    runUntil([&] { return client->ends > 0; }, "The film does not end.");
  }
  if (client->ends != 1) fail("An end was told twice.");
  film.reset();
  runUntil([] { return test::playerThreads() == 0; }, "A pipeline is left behind.");
  return 0;
}
