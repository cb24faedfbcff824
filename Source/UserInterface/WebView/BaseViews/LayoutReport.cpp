#include "UserInterface/WebView/BaseViews/LayoutReport.h"

namespace tavo {

LayoutReport layoutReport(const LayoutFacts& facts) {
  const Rect whole{0, 0, facts.screen.width, facts.screen.height};
  if (facts.placement != PlacementType::inlined && facts.placement != PlacementType::interstitial) {
    return {facts.screen, whole, {}, false};
  }
  LayoutReport report{facts.screen, facts.defaultFrame, facts.page, false};
  if (facts.state == MRAIDState::expanded) {
    report.currentPosition = whole;
    report.isViewable = true;
  } else {
    report.isViewable = facts.isOnScreen && whole.intersects(facts.page);
  }
  if (facts.appBrowserOpen) report.isViewable = false;
  return report;
}

}  // namespace tavo
