#pragma once

#include <memory>

#include <tavo/CVAd.h>
#include <tavo/Export.h>
#include <tavo/View.h>
#include <tavo/ViewController.h>

namespace tavo {

// A banner of an external network. Thread, ownership and errors: see CVAd.
class TAVO_EXPORT CVBannerAdView : public CVAd {
 public:
  // The name under which a network offers its class.
  static constexpr const char* className = "CVBannerAdView";

  // The view that the ad is drawn in, the same on every call and never null. The SDK makes it a
  // subview of the slot before it calls loadAd and takes it out after a failure; what the network
  // puts into it is the network's.
  [[nodiscard]] virtual std::shared_ptr<View> view() = 0;

  // Where the view stands, in points of the slot.
  [[nodiscard]] virtual Rect frame() { return view()->frame(); }
  virtual void setFrame(const Rect& frame) { view()->setFrame(frame); }
  // Moves the frame, its size kept.
  virtual void setCenter(const Point& center) {
    const Rect current = frame();
    setFrame({center.x - current.width / 2, center.y - current.height / 2, current.width,
              current.height});
  }

  // The controller to present pages over; expired where the slot stands in no window.
  virtual void setRootViewController(const std::weak_ptr<ViewController>& controller) = 0;
  // The size of the ad to ask for, in points. It need not be the view's.
  virtual void setAdSize(const Size& size) = 0;
  // Seconds between ads that the network brings by itself; the SDK refreshes its slots and sets 0.
  virtual void setAutoRefreshInterval(double seconds) = 0;
};

}  // namespace tavo
