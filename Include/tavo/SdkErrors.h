#pragma once

#include <string>

#include <tavo/Error.h>

namespace tavo {

// Codes of the errors that the SDK makes itself, in the domain sdkErrorDomain. The values are part
// of the interface. A host that meets one of them usually shows its own content and lets the next
// refresh try again; where more can be done, the comment says it.
enum class SdkError : int {
  emptyAd = 1001,              // the server had nothing for this slot
  noAd = 1002,                 // an answer without an ad, or one that cannot be shown
  noConnectivity = 1003,       // offline; the slot loads by itself once the network is back
  invalidPictureUri = 1004,    // a creative wants to save a picture from no address
  userCancelled = 1005,        // the person did not want the picture
  undecodableImage = 1006,     // no picture, or one beyond Limits::picturePixels
  renderingRefused = 1007,     // the host's delegate did not want this page
  mediationImpossible = 1008,  // no external network is there: see AdNetworkClasses
  vastTrackingMissing = 1010,  // a video ad without tracking events
  vastInvalid = 1011,          // not a VAST document, or one beyond the limits
  invalidMovieUrl = 1012,      // no address of a film, a chain without an end, a film of no use
};

// An error of the SDK's domain.
[[nodiscard]] inline Error makeError(SdkError code, std::string description) {
  return {std::string{sdkErrorDomain}, static_cast<int>(code), std::move(description)};
}

}  // namespace tavo
