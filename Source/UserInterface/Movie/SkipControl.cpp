#include "UserInterface/Movie/SkipControl.h"

#include "UserInterface/Pictures/Pictures.h"
#include "Values/Translation.h"

namespace tavo {

namespace {

constexpr double titleSize = 12;  // points

}  // namespace

Button& SkipControl::shownOn(View& video) {
  if (!button_) button_ = std::make_shared<Button>();
  if (button_->superview() != &video) video.addSubview(button_);
  video.bringSubviewToFront(*button_);
  layOut();
  return *button_;
}

CountdownPlacement SkipControl::placeOn(const View& video) const {
  const Size size = video.frame().size();
  return close_ ? controlPlacement(size) : countdownPlacement(position_, size);
}

void SkipControl::layOut() {
  if (!button_ || button_->superview() == nullptr) return;
  const CountdownPlacement place = placeOn(*button_->superview());
  button_->setFrame(place.frame);
  button_->setAutoresizingMask(place.autoresizing);
  button_->setTitleStyle(ButtonTitleStyle{style_.text, titleSize, place.alignment});
}

void SkipControl::showCountdown(View& video, const std::string& text,
                                std::optional<unsigned> position) {
  close_ = false;
  position_ = position;
  Button& button = shownOn(video);
  button.setUserInteractionEnabled(false);
  button.setImage({});
  button.setTitle(text);
  // Translators: %1 is a time, minutes and seconds.
  button.setAccessibilityLabel(filledIn(translated("The ad can be left in %1"), text));
  button.setBackgroundColor(style_.background);
  button.setAction({});
}

void SkipControl::showClose(View& video, std::function<void()> action) {
  close_ = true;
  Button& button = shownOn(video);
  button.setUserInteractionEnabled(true);
  Image picture = closePicture(environment_->platform());
  // Nobody is held in front of a video because a picture is missing.
  button.setTitle(picture.empty() ? "\u2715" : "");
  button.setImage(std::move(picture));
  button.setBackgroundColor(std::nullopt);
  button.setAccessibilityLabel(translated("Close"));
  button.setAction(std::move(action));
}

void SkipControl::remove() {
  if (button_) button_->removeFromSuperview();
  button_.reset();
  close_ = false;
}

}  // namespace tavo
