#pragma once

#include <functional>
#include <memory>

#include <tavo/ViewController.h>

#include "Services/RunLoop.h"
#include "UserInterface/WebView/BaseViews/EndPlan.h"

namespace tavo {

class Environment;
class XAdInterstitialViewController;

// Leads an interstitial off the screen, once an ad, whatever comes first. Main thread only.
class InterstitialExit {
 public:
  // What only the whole interstitial can do on its way out.
  class Host {
   public:
    virtual ~Host() = default;
    virtual void tellCreativeThatItIsHidden() = 0;
    virtual void removeContent() = 0;
    virtual void releaseMemory() = 0;
  };

  InterstitialExit(std::shared_ptr<Environment> environment,
                   XAdInterstitialViewController& controller, Host& host);

  // A new ad: what would have ended the last one is forgotten.
  void begin();
  // The controller comes onto the screen again.
  void reopen() { over_ = false; }
  // Its end was told, or needs no telling.
  [[nodiscard]] bool isOver() const { return over_; }

  void end(EndCause cause) { carryOut(planEnd(cause)); }
  // After a failure: the earlier of two dismissals counts.
  void dismissLater(Seconds delay);

 private:
  void carryOut(const EndPlan& plan);
  void leave(Animated animated, const std::function<void()>& gone);
  void report(EndPlan::Report report) const;
  void dismissViewControllerWithError();

  const std::shared_ptr<Environment> environment_;
  XAdInterstitialViewController& controller_;
  Host& host_;
  bool over_ = false;
  Timer dismissal_;
  Seconds dismissalDue_{0};
};

}  // namespace tavo
