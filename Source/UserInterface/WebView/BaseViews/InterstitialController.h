#pragma once

namespace tavo {

// What an ad view needs of the controller that shows it on the whole screen. Main thread; the ad
// view finds it as the controller that it stands in, and is held by whoever calls.
class InterstitialController {
 public:
  virtual ~InterstitialController() = default;

  // The ad view has let go of its ad: there is nothing left to cover the host's content for.
  virtual void adViewDidReleaseMemory() = 0;
  // The screen was locked while the ad stood on it.
  virtual void deviceDidLock() = 0;
};

}  // namespace tavo
