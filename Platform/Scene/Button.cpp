#include <tavo/Button.h>

namespace tavo {

void Button::setImageMargin(double margin) {
  imageMargin_ = margin;
  changed();
}

void Button::setImage(Image image) {
  image_ = std::move(image);
  changed();
}

void Button::setTitle(std::string title) {
  title_ = std::move(title);
  changed();
}

void Button::setTitleStyle(std::optional<ButtonTitleStyle> style) {
  titleStyle_ = style;
  changed();
}

void Button::setEnabled(bool enabled) {
  enabled_ = enabled;
  changed();
}

void Button::sizeToFit() {
  if (image_.empty()) return;
  setFrame(
      {frame().x, frame().y, image_.width() / image_.scale(), image_.height() / image_.scale()});
}

void Button::press() {
  if (!enabled_ || !action_) return;
  const auto action = action_;  // the action may drop the button
  action();
}

}  // namespace tavo
