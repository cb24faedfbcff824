#include "Scene/Toolbar.h"

#include <algorithm>

namespace tavo {

namespace {
constexpr Color lightBar{0.96F, 0.96F, 0.96F, 1};
constexpr Color darkBar{0.11F, 0.11F, 0.12F, 1};
}  // namespace

void Toolbar::setItems(std::vector<std::shared_ptr<Button>> items) {
  for (const auto& item : items_) item->removeFromSuperview();
  items_ = std::move(items);
  for (const auto& item : items_) addSubview(item);
  layoutSubviews();
}

void Toolbar::setBarStyle(int style) {
  barStyle_ = style;
  setBackgroundColor(style == 0 ? lightBar : darkBar);
}

bool Toolbar::isDark() const {
  const Color color = backgroundColor().value_or(lightBar);
  // How bright the eye finds it (Rec. 709).
  const float brightness = 0.2126F * color.red + 0.7152F * color.green + 0.0722F * color.blue;
  return brightness < 0.5F;
}

void Toolbar::layoutSubviews() {
  const double height = bounds().height;
  const double room = std::max(0.0, bounds().width - standardHeight);
  const double step = items_.size() < 2 ? 0 : room / static_cast<double>(items_.size() - 1);
  double left = 0;
  for (const auto& item : items_) {
    item->setFrame({left, 0, standardHeight, height});
    left += step;
  }
}

}  // namespace tavo
