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

}  // namespace tavo
