#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include <tavo/gtk/MovieSlot.h>

#include "Elapsed.h"
#include "Support/GtkHost.h"

namespace tavo::benchmark {

// What the library does on its way from an ad server's answer to a playing video.
struct VideoTimes {
  std::vector<Clock::time_point> answers;  // when the client had each
  std::vector<double> ticks;               // milliseconds of each look at the progress
};

// A host that lends its movie player to its slot.
class VideoHost {
 public:
  VideoHost();
  ~VideoHost();

  // The player that the host owns, ahead of the first ad.
  void makePlayer();
  // Plays the sample pre-roll. Milliseconds from the answer to the first picture.
  double prepare();
  // The same without a player of the host's: from the answer to playing.
  double playInterstitial();
  void endAd() { host_.makeBanner(); }

  // Turns the loop until `done`, or for far longer than anything here takes.
  void turnUntil(const std::function<bool()>& done);
  void turnFor(std::chrono::milliseconds time);

  [[nodiscard]] std::string clipUrl();
  [[nodiscard]] Gtk::Box& column() { return host_.column(); }
  [[nodiscard]] const VideoTimes& times() const { return *times_; }

 private:
  double sinceAnswer(const std::function<bool()>& done);

  std::shared_ptr<VideoTimes> times_ = std::make_shared<VideoTimes>();
  test::GtkHost host_;
  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> slot_;
};

}  // namespace tavo::benchmark
