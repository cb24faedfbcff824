#pragma once

#include <limits>
#include <map>
#include <memory>
#include <string>

#include "Rules/Media.h"
#include "Services/RunLoop.h"

namespace tavo::headless {

// A video that a test scripts.
struct ScriptedMovie {
  double duration = 30;  // seconds; what its header says
  bool hasVideo = true;  // false: a picture or a sound that was sent as a video
  Seconds arrival{0.1};  // until the first picture is there
  bool arrives = true;   // false: the server stays silent
  double cutAt = std::numeric_limits<double>::infinity();    // seconds of it that were sent
  double stallAt = std::numeric_limits<double>::infinity();  // where nothing more arrives
};

// The videos by URL; any other cannot be played.
using ScriptedMovies = std::map<std::string, ScriptedMovie>;

// A media framework that plays scripts: its time is the run loop's.
class ScriptedMedia : public Media {
 public:
  ScriptedMedia(std::shared_ptr<RunLoop> runLoop, const ScriptedMovie& movie, Events events);

  void play() override;
  void pause() override;
  void seek(double seconds) override;
  void setMuted(bool /*muted*/) override {}
  [[nodiscard]] double position() const override;
  [[nodiscard]] double duration() const override { return arrived_ ? movie_.duration : 0; }
  [[nodiscard]] bool hasVideo() const override { return movie_.hasVideo; }

 private:
  void arrive();
  void run();
  void dataEnded();

  std::shared_ptr<RunLoop> runLoop_;
  ScriptedMovie movie_;
  Events events_;
  bool arrived_ = false;
  bool plays_ = false;
  double position_ = 0;  // at `since_`
  Seconds since_{0};
  Timer arrival_;
  Timer end_;
  Timer tick_;
  Timer stateReport_;
  Timer seekReport_;
};

}  // namespace tavo::headless
