#pragma once

#include <gst/play/play.h>

#include <functional>
#include <memory>
#include <string>

#include "Gtk/Video/AnswerWatch.h"
#include "Gtk/Video/FrameSink.h"
#include "Gtk/Video/MediaEngine.h"
#include "Rules/Media.h"

namespace tavo::gtk {

// One content in GStreamer.
class Playback : public Media {
 public:
  // Fetches nothing yet. The framework must be set up. `show` is handed each picture before the
  // event that tells of it.
  Playback(const MediaEngine& engine, const std::string& url, std::function<void(GdkTexture*)> show,
           Events events);
  ~Playback() override;
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  void play() override;
  void pause() override;
  void seek(double seconds) override;
  void setMuted(bool muted) override { gst_play_set_mute(play_, muted ? TRUE : FALSE); }

  [[nodiscard]] double position() const override;
  [[nodiscard]] double duration() const override;
  [[nodiscard]] bool hasVideo() const override;

 private:
  void begin();
  static gboolean onMessage(GstBus* bus, GstMessage* message, gpointer self);
  void hear(GstMessage* message);
  void hearState(GstMessage* message);
  void hearError(GstMessage* message);

  Events events_;
  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<FrameSink> sink_;
  GstPlay* play_ = nullptr;
  std::shared_ptr<AnswerWatch> answers_;
  bool hasBegun_ = false;
  bool isSeeking_ = false;
  GstBus* bus_ = nullptr;
};

}  // namespace tavo::gtk
