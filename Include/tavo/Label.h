#pragma once

#include <string>

#include <tavo/View.h>

namespace tavo {

enum class TextAlignment { left, center, right };

// Shows one line of plain text; what does not fit is cut with an ellipsis.
class Label : public View {
 public:
  using View::View;

  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string text);
  [[nodiscard]] const Color& textColor() const { return textColor_; }
  void setTextColor(Color color);
  [[nodiscard]] double fontSize() const { return fontSize_; }  // points
  void setFontSize(double size);
  [[nodiscard]] TextAlignment alignment() const { return alignment_; }
  void setAlignment(TextAlignment alignment);

 private:
  std::string text_;
  Color textColor_ = colors::black;
  double fontSize_ = 14;
  TextAlignment alignment_ = TextAlignment::left;
};

}  // namespace tavo
