#include "UserInterface/WebView/BaseViews/InterstitialCloseButton.h"

namespace tavo {

namespace {

constexpr double side = 40;
constexpr double sideByStandard = 50;
constexpr double top = 8;

bool isRichMedia(MobileAdSubTypes subType) {
  return subType == MobileAdSubTypes::richMediaBanner ||
         subType == MobileAdSubTypes::richMediaInterstitial;
}

}  // namespace

bool mayAddCloseButton(const CloseButtonFacts& facts) {
  return !facts.exists && !facts.useCustomClose && isRichMedia(facts.subType);
}

bool mayAddCloseButtonWithoutImage(const CloseButtonFacts& facts) {
  return isRichMedia(facts.subType);
}

bool mayAddCloseButtonForRedirect(const CloseButtonFacts& facts) {
  return facts.subType != MobileAdSubTypes::vastInterstitial;
}

bool isClosedLikeRedirect(MobileAdSubTypes subType) {
  return subType == MobileAdSubTypes::redirectInterstitial ||
         subType == MobileAdSubTypes::redirectImageBanner || subType == MobileAdSubTypes::image;
}

CloseButtonChange changeForExpandProperties(const CloseButtonFacts& facts) {
  if (facts.exists && facts.useCustomClose) return CloseButtonChange::hide;
  if (!facts.exists && !facts.useCustomClose) return CloseButtonChange::add;
  return CloseButtonChange::none;
}

CloseButtonPlace interstitialCloseButtonPlace(double viewWidth, bool byStandard) {
  if (!byStandard) return {{viewWidth - side, top, side, side}};
  return {{viewWidth - sideByStandard, 0, sideByStandard, sideByStandard},
          (sideByStandard - side) / 2};
}

LeaveWay wayToLeave(const LeaveFacts& facts) {
  if (!facts.adLoaded || !facts.hasVideo) return LeaveWay::close;
  return facts.videoCloseDisplayed ? LeaveWay::closeVideo : LeaveWay::stay;
}

}  // namespace tavo
