#pragma once

#include <functional>

#include <tavo/View.h>

namespace tavo {

// A view that tells its owner when its subviews have followed a new size.
class LayoutView : public View {
 public:
  using View::View;

  // Emptied by an owner that goes first.
  std::function<void()> onLayout{};

 private:
  void layoutSubviews() override {
    if (onLayout) onLayout();
  }
};

}  // namespace tavo
