#include <tavo/Label.h>

namespace tavo {

void Label::setText(std::string text) {
  text_ = std::move(text);
  changed();
}

void Label::setTextColor(Color color) {
  textColor_ = color;
  changed();
}

void Label::setFontSize(double size) {
  fontSize_ = size;
  changed();
}

void Label::setAlignment(TextAlignment alignment) {
  alignment_ = alignment;
  changed();
}

}  // namespace tavo
