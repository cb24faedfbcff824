#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Gtk/Video/VideoModule.h"

namespace tavo::gtk {

// Sets the media framework up, once per process and away from the main thread: finding and mapping
// its plugins takes a tenth of a second and more. Main thread only.
class MediaEngine : public std::enable_shared_from_this<MediaEngine> {
 public:
  explicit MediaEngine(VideoModuleServices services) : services_{std::move(services)} {}

  // Begins; harmless when repeated.
  void start();

  // Calls `task` with whether the framework can be used: at once when that is known, else when it
  // is. Tasks are called in the order in which they came.
  void whenReady(std::function<void(bool usable)> task);

  // Whether there was a sound device at the start; without one videos play in silence.
  [[nodiscard]] bool hasSoundDevice() const { return soundDevice_; }

  [[nodiscard]] const VideoModuleServices& services() const { return services_; }

 private:
  enum class State { idle, starting, usable, unusable };

  void started(bool usable, bool sound);

  VideoModuleServices services_;
  State state_ = State::idle;
  bool soundDevice_ = false;
  std::vector<std::function<void(bool)>> waiting_;
};

}  // namespace tavo::gtk
