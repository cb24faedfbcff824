#pragma once

#include <optional>
#include <string>

#include "UserInterface/NativeView/SkipPoint.h"

namespace tavo {

// The way of a video from its countdown to the control by which it is left: what is shown at which
// time, whoever draws it.
class SkipProgress {
 public:
  // The video's length is known, and so its skip point.
  void begin(SkipPoint point) { point_ = std::move(point); }

  // What a look at the video, `time` seconds into it, asks for.
  struct Step {
    std::optional<std::string> countdown{};  // the text to show
    bool control = false;                    // the skip point is reached: show the control now
  };
  [[nodiscard]] Step at(double time) const;

  // Whether a countdown is to be read that ends within the video of `duration` seconds.
  [[nodiscard]] bool isCounting(double time, double duration) const;

  // The control is there: nothing more is asked for.
  void controlShown() { controlShown_ = true; }
  [[nodiscard]] bool isControlShown() const { return controlShown_; }

  // Seconds; -1 until it is known.
  [[nodiscard]] float skipDelay() const { return point_.skipDelay; }

 private:
  SkipPoint point_{.skipOffset = {}, .skipDelay = -1};
  bool controlShown_ = false;
};

}  // namespace tavo
