#include <tavo/Label.h>

namespace tavo {

void Label::setText(std::string text) { change(text_, std::move(text)); }

void Label::setTextColor(Color color) { change(textColor_, color); }

void Label::setFontSize(double size) { change(fontSize_, size); }

void Label::setAlignment(TextAlignment alignment) { change(alignment_, alignment); }

}  // namespace tavo
