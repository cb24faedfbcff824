#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include <tavo/CVAdDelegate.h>
#include <tavo/Date.h>
#include <tavo/Export.h>

namespace tavo {

// One ad of an external network: what its banners and interstitials have in common. An external
// network derives from CVBannerAdView and CVInterstitialAd and offers both by their names: see
// AdNetworkExports.h for a library, AdNetworkClasses.h for code inside the host.
//
// Thread: the SDK calls on the main thread, one ad after the other. Ownership: the SDK makes the
// ad, holds it while it is interested and destroys it on the main thread, never inside a call of
// the ad's own. Errors: an exception out of any operation ends the ad with error 1008; better is to
// report through the delegate. No operation may block: answer later, from the main loop.
class TAVO_EXPORT CVAd {
 public:
  virtual ~CVAd() = default;

  // Which ad: the network's own name for the slot. Not empty, blanks around it are possible.
  virtual void setPlacementId(const std::string& placementId) = 0;
  // Whom to tell. Once it has expired nobody is interested in this ad.
  virtual void setDelegate(const std::weak_ptr<CVAdDelegate>& delegate) = 0;
  // Whether a click opens its page outside the application, or else above it.
  virtual void setOpensInNativeBrowser(bool opens) = 0;

  // What the host says of its user. The age is a number as text, "-1" where it is not known. The
  // gender is 0 where it is not known, else 1 or 2.
  virtual void setAge(const std::string& age) = 0;
  virtual void setGender(int gender) = 0;
  // The ad's own copy.
  virtual void setCustomKeywords(std::map<std::string, std::string> keywords) = 0;
  // Degrees (WGS 84), when the place was found (none: not known) and metres. Not called when the
  // host names no place.
  virtual void setLocationWithLatitude(double latitude, double longitude,
                                       std::optional<Date> timestamp,
                                       double horizontalAccuracy) = 0;

  // Asks for the ad, as the last operation before the delegate is told. Called once.
  virtual void loadAd() = 0;
};

}  // namespace tavo
