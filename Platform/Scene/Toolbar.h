#pragma once

#include <memory>
#include <vector>

#include <tavo/Button.h>
#include <tavo/View.h>

namespace tavo {

// A strip of buttons over the width of a window: the first at its left edge, the last at its right
// edge, the others spread between them. Main thread only.
class Toolbar : public View {
 public:
  using View::View;

  static constexpr double standardHeight = 44;  // points; also the width of a button

  [[nodiscard]] const std::vector<std::shared_ptr<Button>>& items() const { return items_; }
  // Puts the buttons into the strip in place of the former ones.
  void setItems(std::vector<std::shared_ptr<Button>> items);

  // 0 is light, every other code dark; the background is set with it.
  [[nodiscard]] int barStyle() const { return barStyle_; }
  void setBarStyle(int style);

  // Whether what is drawn on the strip had better be light.
  [[nodiscard]] bool isDark() const;

 protected:
  void layoutSubviews() override;

 private:
  std::vector<std::shared_ptr<Button>> items_;
  int barStyle_ = 0;
};

}  // namespace tavo
