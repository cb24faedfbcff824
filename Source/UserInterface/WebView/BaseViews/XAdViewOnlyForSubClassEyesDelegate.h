#pragma once

#include <functional>

#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"

namespace tavo {

class XAdView;

// What an ad view tells the SDK's own full-screen controller. Main thread.
struct XAdViewOnlyForSubClassEyesDelegate {
  // The creative has set expand properties.
  std::function<void(const XMRAIDExpandProperties&)> expandPropertiesChnaged{};
  // The creative has set orientation properties.
  std::function<void(const XMRAIDOrientationProperties&)> setOrientationPropertiesWith{};
  // An ad that covers the screen is to be closed.
  std::function<void(XAdView&)> XInterstitialAdDidClose{};
  // Whether the host hears of loaded interstitials, without which none is mediated.
  std::function<bool()> isRequiredDelegateImplementedByPublisher{};
};

}  // namespace tavo
