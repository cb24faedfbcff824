#pragma once

#include <gst/play/play.h>

#include <functional>
#include <memory>
#include <string>

#include "Gtk/Video/FrameSink.h"
#include "Gtk/Video/MediaEngine.h"

namespace tavo::gtk {

// One content in the media framework, from its first byte to its end. Main thread only; events are
// called from the main loop, and none once the playback is gone.
class Playback {
 public:
  struct Events {
    std::function<void(GdkTexture*)> picture{};
    std::function<void(GstPlayState)> state{};
    std::function<void()> moved{};   // half a second of playing, a new fact
    std::function<void()> sought{};  // a seek is over
    std::function<void()> ended{};   // the data is over
    std::function<void(const std::string& why)> failed{};
  };

  // Fetches nothing yet. The framework must be set up.
  Playback(const MediaEngine& engine, const std::string& url, Events events);
  ~Playback();
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  void play() { gst_play_play(play_); }
  void pause() { gst_play_pause(play_); }
  void seek(double seconds);

  [[nodiscard]] double position() const;  // seconds
  [[nodiscard]] double duration() const;  // seconds; 0 when not known
  [[nodiscard]] bool hasVideo() const;

 private:
  static gboolean onMessage(GstBus* bus, GstMessage* message, gpointer self);
  void hear(GstMessage* message);
  void hearError(GstMessage* message);

  Events events_;
  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<FrameSink> sink_;
  GstPlay* play_ = nullptr;
  GstBus* bus_ = nullptr;
};

}  // namespace tavo::gtk
