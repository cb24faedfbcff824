#pragma once

#include <memory>
#include <optional>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "Runtime/NotificationCenter.h"
#include "Runtime/Relay.h"
#include "Services/RunLoop.h"
#include "UserInterface/WebView/BaseViews/RefreshPolicy.h"

namespace tavo {

class Environment;

// Decides when an ad view asks for an ad: the first load, the refresh timer, and what follows from
// connectivity, background, lock and memory pressure. Belongs to one view; main thread only.
class AdViewLoader {
 public:
  // What the loader needs of its view.
  class Host : public virtual AdViewIdentity {
   public:
    // Visible, type, sub-type and interval; the other facts are the loader's own.
    [[nodiscard]] virtual RefreshFacts refreshFacts() const = 0;
    // An ad on screen that the user has opened is never replaced.
    [[nodiscard]] virtual bool isExpandedOrResized() const = 0;
    // A load begins: what the last one left behind is forgotten.
    virtual void willLoad() = 0;
    // Asks the ad manager for an ad; `waiting`: the answer to the last request is still to come,
    // and is of no use any more.
    virtual void requestAd(bool waiting) = 0;
    // Starts anew, with a new ad manager.
    virtual void reload() = 0;
    virtual void leaveForBackground() = 0;
    virtual void didReceiveMemoryWarning() = 0;
    virtual void didLockScreen() = 0;
    virtual void orientatioDidChange() = 0;
  };

  AdViewLoader(std::shared_ptr<Environment> environment, Host& host);

  // One ad request, if the view's state allows it; an earlier one is not waited for any more.
  void loadAd();
  // The request has been answered, or has failed.
  void requestDidEnd() { flags_.waiting = false; }
  // The refresh timer's tick.
  void loadAdWithParameters();
  // Decides whether the refresh timer runs.
  void refreshAd();
  // The view's place came onto the screen: what was decided while it was away is decided anew.
  void didAppearOnScreen();

  void setOrientationNotification();
  void setEnterForegroundNotification();
  // Ends the timer and what follows the network; what follows the screen stays.
  void stop();

  [[nodiscard]] bool isDeviceLocked() const { return flags_.deviceLocked; }
  // Whether the answer to a request is being waited for.
  [[nodiscard]] bool isWaiting() const { return flags_.waiting; }
  [[nodiscard]] bool isAdLoaded() const { return flags_.adLoaded; }
  void setAdLoaded() { flags_.adLoaded = true; }
  [[nodiscard]] bool isRefreshTimerRunning() const { return adRefreshTimer_.isValid(); }

 private:
  struct Flags {
    bool firstAdRequest = true;  // the next load is a first one, allowed even when not visible
    bool timerFired = false;     // a refresh timer was started
    bool arming = false;         // the new timer is being fired for the first time
    bool decidedUnseen = false;  // the last refresh decision fell while the view was not visible
    bool deviceLocked = false;   // since the last refresh decision
    bool enterBackground = false;
    bool adLoaded = false;  // the slot shows an ad
    bool waiting = false;   // for the answer to a request
  };

  [[nodiscard]] RefreshFacts facts() const;
  // Requests that nobody asked for keep a distance to the last one: how much of it is left.
  [[nodiscard]] Seconds remainingDistance() const;
  // Runs `load` once the distance is kept.
  void whenDue(void (AdViewLoader::*load)());
  [[nodiscard]] bool waits() const;
  void armTimer(float interval);
  void didInternetAccessChange(const Notification& notification);
  void reload() { host_.reload(); }
  void didEnterBackground();
  void didEnterForeground();
  void onDeviceScreenLock();
  void orientatioDidChange() { host_.orientatioDidChange(); }
  void didReceiveMemoryWarning() { host_.didReceiveMemoryWarning(); }
  [[nodiscard]] Relay<AdViewLoader> relay();
  template <typename Handler>
  [[nodiscard]] Subscription subscribe(std::string_view name, Handler handler);

  const std::shared_ptr<Environment> environment_;
  Host& host_;
  Flags flags_;
  Timer adRefreshTimer_;
  Timer postponed_;  // a request that keeps its distance
  std::optional<Seconds> lastRequest_;
  Subscription internetAccess_;
  Subscription lock_;
  Subscription orientation_;
  Subscription windowSize_;
  Subscription background_;
  Subscription foreground_;
  Subscription memoryWarning_;
};

}  // namespace tavo
