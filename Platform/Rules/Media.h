#pragma once

#include <functional>
#include <string>

namespace tavo {

// One content in a platform's media framework, from its first byte to its end. Main thread only.
class Media {
 public:
  // Called from the main loop, never inside a call to the media, and none once the media is gone.
  // Any of them may end the media.
  struct Events {
    std::function<void()> picture{};  // the first, and every later one
    std::function<void()> playing{};
    std::function<void()> paused{};
    std::function<void()> moved{};   // half a second of playing, a new fact
    std::function<void()> sought{};  // a seek is over
    std::function<void()> ended{};   // the data is over
    std::function<void(const std::string& why)> failed{};
  };

  virtual ~Media() = default;

  virtual void play() = 0;
  virtual void pause() = 0;
  virtual void seek(double seconds) = 0;
  // Whether its sound is heard; it is at first.
  virtual void setMuted(bool muted) = 0;

  [[nodiscard]] virtual double position() const = 0;  // seconds
  [[nodiscard]] virtual double duration() const = 0;  // seconds; 0 when not known
  [[nodiscard]] virtual bool hasVideo() const = 0;
};

}  // namespace tavo
