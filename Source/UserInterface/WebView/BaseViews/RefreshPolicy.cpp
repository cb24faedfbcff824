#include "UserInterface/WebView/BaseViews/RefreshPolicy.h"

namespace tavo {

bool mayKeepRefreshing(const RefreshFacts& facts) {
  return facts.visible && facts.subType != MobileAdSubTypes::vastBanner &&
         facts.type != MobileAdTypes::interstitial && !facts.deviceLocked && facts.interval != 0;
}

bool mustArmRefresh(const RefreshFacts& facts) {
  return facts.visible && (!facts.timerFired || facts.firstAdRequest) && facts.interval > 0 &&
         facts.type != MobileAdTypes::interstitial &&
         facts.subType != MobileAdSubTypes::vastBanner;  // a pre-roll is asked for by the host
}

}  // namespace tavo
