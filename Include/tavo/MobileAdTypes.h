#pragma once

namespace tavo {

// Where an ad stands on the screen: a banner among the host's content, an interstitial above all of
// it. The values of both enumerations are part of the interface.
enum class MobileAdTypes { banner = 0, interstitial = 1 };

// What kind of ad a view shows, as the answer of the server was classified. Valid from then until
// the next answer.
enum class MobileAdSubTypes {
  unknown = 0,                // not yet known: nothing was answered, or nothing to show
  image = 1,                  // a picture with a click
  richMediaBanner = 2,        // an HTML page, MRAID or plain
  richMediaInterstitial = 3,  // the same above everything
  vastInterstitial = 4,       // a film above everything
  vastBanner = 5,             // pre-roll: a film in the player that the host lends
  redirectImageBanner = 6,    // a redirect that ended in a picture
  redirectHtmlBanner = 7,     // one that ended in a page
  redirectInterstitial = 8,   // one above everything
};

// Whether the SDK itself draws the ad as a picture or a page, with all that MRAID asks of a view.
[[nodiscard]] constexpr bool isMraid(MobileAdSubTypes subType) {
  return subType != MobileAdSubTypes::unknown && subType != MobileAdSubTypes::vastInterstitial &&
         subType != MobileAdSubTypes::vastBanner;
}

}  // namespace tavo
