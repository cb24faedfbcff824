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
  // The ad view has let go of its ad: there is nothing left to cover the host's content for.
  std::function<void()> adViewDidReleaseMemory{};
  // The screen was locked while a page or a picture stood on it.
  std::function<void()> deviceDidLock{};
};

}  // namespace tavo
