#include "UserInterface/WebView/BaseViews/InterstitialOrientation.h"

namespace tavo {

bool mayAutorotate(const OrientationRules& rules) { return rules && rules->allowOrientationChange; }

// Quirk: the number of the forced orientation is compared with the number of the interface's, which
// count differently: forced landscape permits upright only, forced portrait permits nothing.
// Creatives were tested against that.
bool mayAutorotateTo(InterfaceOrientation orientation, const OrientationRules& rules) {
  if (mayAutorotate(rules)) return true;
  return rules && static_cast<int>(rules->forceOrientation) == static_cast<int>(orientation);
}

OrientationMask supportedOrientations(const OrientationRules& rules) {
  if (!rules || rules->allowOrientationChange) return allOrientations;
  switch (rules->forceOrientation) {
    case ForceOrientation::portrait:
      return maskOf(InterfaceOrientation::portrait);
    case ForceOrientation::landscape:
      return landscapeOrientations;
    case ForceOrientation::none:
      break;
  }
  return allOrientations;
}

InterfaceOrientation preferredOrientation(const OrientationRules& rules,
                                          InterfaceOrientation current) {
  if (!rules || rules->allowOrientationChange) return current;
  switch (rules->forceOrientation) {
    case ForceOrientation::portrait:
      return InterfaceOrientation::portrait;
    case ForceOrientation::landscape:
      return InterfaceOrientation::landscapeLeft;
    case ForceOrientation::none:
      break;
  }
  return current;
}

}  // namespace tavo
