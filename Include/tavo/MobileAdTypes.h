#pragma once

namespace tavo {

// Where an ad stands on the screen.
enum class MobileAdTypes { banner = 0, interstitial = 1 };

// What kind of ad a view shows.
enum class MobileAdSubTypes {
  unknown = 0,
  image = 1,
  richMediaBanner = 2,
  richMediaInterstitial = 3,
  vastInterstitial = 4,
  vastBanner = 5,  // pre-roll
  redirectImageBanner = 6,
  redirectHtmlBanner = 7,
  redirectInterstitial = 8,
};

// Whether the SDK itself draws the ad as a picture or a page, with all that MRAID asks of a view.
[[nodiscard]] constexpr bool isMraid(MobileAdSubTypes subType) {
  return subType != MobileAdSubTypes::unknown && subType != MobileAdSubTypes::vastInterstitial &&
         subType != MobileAdSubTypes::vastBanner;
}

}  // namespace tavo
