#pragma once

#include <tavo/View.h>

namespace tavo {

// A wheel that turns while something is under way.
class Spinner : public View {
 public:
  using View::View;

  [[nodiscard]] const Color& color() const { return color_; }
  void setColor(const Color& color);

  [[nodiscard]] bool isAnimating() const { return animating_; }
  void startAnimating() { setAnimating(true); }
  void stopAnimating() { setAnimating(false); }

 private:
  void setAnimating(bool animating);

  Color color_ = colors::white;
  bool animating_ = false;
};

}  // namespace tavo
