#pragma once

#include <gtkmm.h>

#include <functional>
#include <string>
#include <vector>

namespace tavo::adplayer {

// Records what a widget shows, a few pictures a second, and writes one HTML file that plays them.
class Recorder {
 public:
  explicit Recorder(Gtk::Widget& widget) : widget_{widget} {}
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // Ends by itself after two minutes, and says so by `ended`.
  void start(std::function<void()> ended);
  // Returns the recording as HTML; empty when nothing was seen.
  [[nodiscard]] std::string stop();
  [[nodiscard]] bool isRunning() const { return timer_.connected(); }

 private:
  Gtk::Widget& widget_;
  std::vector<std::string> frames_;  // PNG, in base 64
  sigc::connection timer_;
};

}  // namespace tavo::adplayer
