#pragma once

#include <string>

#include <tavo/Export.h>
#include <tavo/View.h>

namespace tavo {

// Where a line stands in the width that it has.
enum class TextAlignment { left, center, right };

// Shows one line of plain text in the system's typeface, in the middle of its height. What does not
// fit its width is cut with an ellipsis. Markup is shown as it stands. Main thread only; changes
// show with the next frame.
class TAVO_EXPORT Label : public View {
 public:
  using View::View;

  // UTF-8; bytes that are none are replaced where they are drawn.
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string text);
  [[nodiscard]] const Color& textColor() const { return textColor_; }
  void setTextColor(Color color);
  // Points.
  [[nodiscard]] double fontSize() const { return fontSize_; }
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
