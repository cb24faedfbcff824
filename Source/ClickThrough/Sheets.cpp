#include "ClickThrough/Sheets.h"

namespace tavo {

void dismissSheet(const std::weak_ptr<ViewController>& sheet, Animated animated) {
  const auto held = sheet.lock();
  if (held && held->presentingViewController() != nullptr) {
    held->presentingViewController()->dismissViewController(animated);
  }
}

}  // namespace tavo
