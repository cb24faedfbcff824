#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/Button.h>

#include "UserInterface/NativeView/CountdownPlacement.h"

namespace tavo {

// The one control that an ad draws on its video: first a countdown that takes no touch, then a
// button with the close picture. Main thread only.
class VideoControl {
 public:
  // How the countdown is written.
  struct Style {
    Color text = colors::white;
    Color background{0, 0, 0, 0.1F};
  };

  explicit VideoControl(Style style) : style_{style} {}
  ~VideoControl() { remove(); }
  VideoControl(const VideoControl&) = delete;
  VideoControl& operator=(const VideoControl&) = delete;

  // Shows `text` in front of everything on `video`; an empty text shows nothing.
  void showText(View& video, const std::string& text, const CountdownPlacement& place);
  // Shows the close picture; `action` runs when it is pressed.
  void showClose(View& video, const Rect& frame, std::function<void()> action);
  // Moves what is shown, for a video of a new size.
  void moveTo(const Rect& frame);
  void remove();

  // Whether there is something to read or to press.
  [[nodiscard]] bool isDrawn() const;
  [[nodiscard]] bool isClose() const { return close_; }
  [[nodiscard]] const std::shared_ptr<Button>& button() const { return button_; }

 private:
  Button& shownOn(View& video);

  Style style_;
  std::shared_ptr<Button> button_;
  bool close_ = false;
};

}  // namespace tavo
