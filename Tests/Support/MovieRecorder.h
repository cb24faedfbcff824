#pragma once

#include <functional>
#include <optional>
#include <string>

#include <tavo/MoviePlayer.h>

#include "Support/Testing.h"

namespace tavo::test {

inline std::string nameOf(MoviePlaybackState state) {
  static const char* const names[] = {"stopped",     "playing", "paused",
                                      "interrupted", "forward", "backward"};
  return names[static_cast<int>(state)];
}

// Writes down what it hears, and whether it was inside a call to the player.
class MovieRecorder : public MoviePlayerClient {
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

}  // namespace tavo::test
