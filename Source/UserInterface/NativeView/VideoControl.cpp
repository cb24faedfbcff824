#include "UserInterface/NativeView/VideoControl.h"

#include "UserInterface/Pictures/Pictures.h"

namespace tavo {

namespace {

constexpr double titleSize = 12;  // points

}  // namespace

Button& VideoControl::shownOn(View& video) {
  if (!button_) button_ = std::make_shared<Button>();
  if (button_->superview() != &video) video.addSubview(button_);
  video.bringSubviewToFront(*button_);
  return *button_;
}

void VideoControl::showText(View& video, const std::string& text, const CountdownPlacement& place) {
  close_ = false;
  Button& button = shownOn(video);
  button.setUserInteractionEnabled(false);
  button.setFrame(place.frame);
  button.setImage({});
  button.setTitleStyle(ButtonTitleStyle{style_.text, titleSize, place.alignment});
  button.setTitle(text);
  button.setBackgroundColor(style_.background);
  button.setAction({});
}

void VideoControl::showClose(View& video, const Rect& frame, std::function<void()> action) {
  close_ = true;
  Button& button = shownOn(video);
  button.setUserInteractionEnabled(true);
  button.setFrame(frame);
  button.setTitle({});
  Image picture = closePicture();
  if (picture.empty()) {
    // Nobody is held in front of a video because a picture is missing.
    button.setTitleStyle(ButtonTitleStyle{style_.text, titleSize, TextAlignment::right});
    button.setTitle("\u2715");
  }
  button.setImage(std::move(picture));
  button.setBackgroundColor(std::nullopt);
  button.setAccessibilityLabel("Close");
  button.setAction(std::move(action));
}

void VideoControl::moveTo(const Rect& frame) {
  if (button_) button_->setFrame(frame);
}

void VideoControl::remove() {
  if (button_) button_->removeFromSuperview();
  button_.reset();
  close_ = false;
}

bool VideoControl::isDrawn() const { return button_ && (close_ || !button_->title().empty()); }

}  // namespace tavo
