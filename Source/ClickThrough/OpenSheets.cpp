#include "ClickThrough/OpenSheets.h"

#include <utility>

namespace tavo {

void dismissSheet(const std::weak_ptr<ViewController>& sheet, Animated animated) {
  const auto held = sheet.lock();
  if (held && held->presentingViewController() != nullptr) {
    held->presentingViewController()->dismissViewController(animated);
  }
}

void OpenSheets::present(ViewController& presenter, const std::shared_ptr<ViewController>& sheet) {
  std::erase_if(sheets_, [](const auto& former) { return former.expired(); });
  presenter.presentViewController(sheet, Animated::yes);
  if (sheet->presentingViewController() != nullptr) sheets_.push_back(sheet);
}

void OpenSheets::dismissAll() {
  auto sheets = std::exchange(sheets_, {});
  while (!sheets.empty()) {
    dismissSheet(sheets.back(), Animated::no);
    sheets.pop_back();
  }
}

}  // namespace tavo
