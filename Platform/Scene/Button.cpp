#include <tavo/Button.h>

namespace tavo {

void Button::setImageMargin(double margin) { change(imageMargin_, margin); }

void Button::setImage(Image image) { change(image_, std::move(image)); }

void Button::setTitle(std::string title) { change(title_, std::move(title)); }

void Button::setTitleStyle(std::optional<ButtonTitleStyle> style) { change(titleStyle_, style); }

void Button::setEnabled(bool enabled) { change(enabled_, enabled); }

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
