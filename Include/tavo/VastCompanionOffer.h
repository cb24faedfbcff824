#pragma once

#include <memory>

#include <tavo/Export.h>
#include <tavo/VastCreative.h>
#include <tavo/View.h>

namespace tavo {

// A companion of the film that plays, offered to the host: its own place, beside the film, is the
// host's to give. Held by the host for as long as it likes; the companion usually stays when the
// film is over. Main thread only.
class TAVO_EXPORT VastCompanionOffer {
 public:
  virtual ~VastCompanionOffer() = default;

  [[nodiscard]] virtual const VastCompanion& companion() const = 0;

  // A view of the companion's size that draws its first usable resource, tells its trackers when it
  // has appeared, and follows clicks by the slot's settings. The same view at each call
  // while somebody holds it; never null. Ready to stand in an AdSlot; the host may keep the view
  // alone.
  [[nodiscard]] virtual std::shared_ptr<View> view() = 0;

  // For a host that draws it by itself: tells the "creativeView" trackers, once; tells the click
  // trackers and opens the page behind the companion.
  virtual void didShow() = 0;
  virtual void didClick() = 0;
};

}  // namespace tavo
