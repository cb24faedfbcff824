#pragma once

#include <string>

#include <tavo/Error.h>

namespace tavo {

// Codes of the errors that the SDK makes itself, in the domain sdkErrorDomain.
enum class SdkError : int {
  emptyAd = 1001,
  noAd = 1002,
  noConnectivity = 1003,
  invalidPictureUri = 1004,
  userCancelled = 1005,
  undecodableImage = 1006,
  renderingRefused = 1007,
  mediationImpossible = 1008,
  vastTrackingMissing = 1010,
  vastInvalid = 1011,
  invalidMovieUrl = 1012,
};

[[nodiscard]] inline Error makeError(SdkError code, std::string description) {
  return {std::string{sdkErrorDomain}, static_cast<int>(code), std::move(description)};
}

}  // namespace tavo
