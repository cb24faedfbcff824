#pragma once

#include <tavo/Geometry.h>
#include <tavo/MobileAdTypes.h>

namespace tavo {

// What decides about an interstitial's close button.
struct CloseButtonFacts {
  bool exists = false;          // there is one already
  bool useCustomClose = false;  // the creative draws its own
  MobileAdSubTypes subType = MobileAdSubTypes::unknown;
};

// Whether each of the three buttons may be put on: the drawn one of a page, the area that takes
// touches over the creative's own, and the drawn one of everything that a redirect or a picture is.
[[nodiscard]] bool mayAddCloseButton(const CloseButtonFacts& facts);
[[nodiscard]] bool mayAddCloseButtonWithoutImage(const CloseButtonFacts& facts);
[[nodiscard]] bool mayAddCloseButtonForRedirect(const CloseButtonFacts& facts);

// Whether an ad that has loaded is closed by the redirect's button.
[[nodiscard]] bool isClosedLikeRedirect(MobileAdSubTypes subType);

// What follows when the creative has said again who draws the button.
enum class CloseButtonChange { none, hide, add };
[[nodiscard]] CloseButtonChange changeForExpandProperties(const CloseButtonFacts& facts);

// In a view of this width, points.
struct CloseButtonPlace {
  Rect frame;              // what takes touches
  double imageMargin = 0;  // around the picture
  friend bool operator==(const CloseButtonPlace&, const CloseButtonPlace&) = default;
};
// By the standard it reaches into the corner of the screen, and the picture stays as large.
[[nodiscard]] CloseButtonPlace interstitialCloseButtonPlace(double viewWidth, bool byStandard);

// What the keyboard's request to leave may do.
struct LeaveFacts {
  bool adLoaded = false;
  bool hasVideo = false;             // the ad is a video
  bool videoCloseDisplayed = false;  // which has come to the point where it may be closed
};
enum class LeaveWay { close, closeVideo, stay };
// The same as the close button may: a video that shows a countdown instead of it is not left.
[[nodiscard]] LeaveWay wayToLeave(const LeaveFacts& facts);

}  // namespace tavo
