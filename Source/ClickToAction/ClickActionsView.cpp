#include "ClickToAction/ClickActionsView.h"

namespace tavo {

ViewController* sheetPresenter(ClickActionsView& view) {
  if (view.placementType() == PlacementType::interstitial) return view.currentViewController();
  switch (view.state()) {
    case MRAIDState::normal:
    case MRAIDState::resized:
      return view.currentViewController();
    case MRAIDState::expanded:
      return view.expandedViewController();
    default:
      return nullptr;
  }
}

void dismissSheet(const std::weak_ptr<ViewController>& sheet, Animated animated) {
  const auto held = sheet.lock();
  if (held && held->presentingViewController() != nullptr) {
    held->presentingViewController()->dismissViewController(animated);
  }
}

}  // namespace tavo
