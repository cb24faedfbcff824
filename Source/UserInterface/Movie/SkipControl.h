#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Button.h>

#include "Runtime/Environment.h"
#include "UserInterface/Movie/CountdownPlacement.h"

namespace tavo {

// The one control that stands on a video: first a countdown that takes no touch, then a button with
// the close picture. It follows the video's size, and the video into full screen. Main thread only.
class SkipControl {
 public:
  // How the countdown is written.
  struct Style {
    Color text = colors::white;
    Color background{0, 0, 0, 0.1F};
  };

  explicit SkipControl(std::shared_ptr<Environment> environment)
      : SkipControl{std::move(environment), Style{}} {}
  SkipControl(std::shared_ptr<Environment> environment, const Style& style)
      : environment_{std::move(environment)}, style_{style} {}
  ~SkipControl() { remove(); }
  SkipControl(const SkipControl&) = delete;
  SkipControl& operator=(const SkipControl&) = delete;

  // Shows `text` in front of everything on `video`; an empty text shows nothing. `position` as in
  // CountdownPlacement.h.
  void showCountdown(View& video, const std::string& text, std::optional<unsigned> position);
  // Shows the close picture; `action` runs when it is pressed.
  void showClose(View& video, std::function<void()> action);
  // Puts what is shown at its exact place on the video as it is now.
  void layOut();
  void remove();

  [[nodiscard]] bool isClose() const { return close_; }
  // Null while nothing is shown.
  [[nodiscard]] const std::shared_ptr<Button>& button() const { return button_; }

 private:
  Button& shownOn(View& video);
  [[nodiscard]] CountdownPlacement placeOn(const View& video) const;

  const std::shared_ptr<Environment> environment_;
  const Style style_;
  std::shared_ptr<Button> button_;
  std::optional<unsigned> position_;  // of the countdown
  bool close_ = false;
};

}  // namespace tavo
