#pragma once

#include <tavo/Error.h>
#include <tavo/Export.h>

namespace tavo {

class CVAd;

// What an ad of an external network tells the SDK. Every operation is there; the first argument is
// the ad that reports.
//
// Thread: the main thread, inside a call of the SDK too. Calls from another thread are passed on to
// the main one, in order. Ownership: the SDK owns its observer and gives it up when it loses
// interest in the ad, so hold it weakly. An ad has one outcome, the first of received and failed;
// what comes after a failure, or for an ad that nobody waits for any more, is ignored.
class TAVO_EXPORT CVAdDelegate {
 public:
  virtual ~CVAdDelegate() = default;

  // The ad is there. A banner is on the screen now; an interstitial is asked to display itself
  // inside this call.
  virtual void adDidReceiveAd(CVAd& ad) = 0;
  // There is no ad. The host is told this very error; the ad is dropped after this turn.
  virtual void adRequestFailedWithError(CVAd& ad, const Error& error) = 0;
  // The user has clicked.
  virtual void adWasClicked(CVAd& ad) = 0;
  // What the ad had opened above the application is about to close, and has closed.
  virtual void adWillClose(CVAd& ad) = 0;
  virtual void adDidClose(CVAd& ad) = 0;
  // The ad is about to open something above the application, and has opened it.
  virtual void adWillPresent(CVAd& ad) = 0;
  virtual void adDidPresent(CVAd& ad) = 0;
  // A click leads out of the application.
  virtual void adWillLeaveApplication(CVAd& ad) = 0;
};

}  // namespace tavo
