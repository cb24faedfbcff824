#include "UserInterface/WebView/BaseViews/AdViewLoader.h"

#include <utility>

#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo {

AdViewLoader::AdViewLoader(std::shared_ptr<Environment> environment, Host& host)
    : environment_{std::move(environment)}, host_{host} {}

void AdViewLoader::loadAd() {
  const OperationLog log{"-[XAdView loadAd]"};
  platformLog("Starting to load Ad...");
  flags_.adLoaded = false;
  if (host_.isExpandedOrResized()) return;
  if (!host_.refreshFacts().visible && !flags_.firstAdRequest) return;
  host_.willLoad();
  postponed_.invalidate();
  lastRequest_ = environment_->platform().runLoop->now();
  host_.requestAd(std::exchange(flags_.waiting, true));
  internetAccess_.reset();
  const RefreshFacts current = facts();
  if (current.subType == MobileAdSubTypes::vastBanner ||
      current.type == MobileAdTypes::interstitial) {
    return;
  }
  internetAccess_ =
      subscribe(internetAccessChangedNotification, &AdViewLoader::didInternetAccessChange);
}

void AdViewLoader::loadAdWithParameters() {
  const OperationLog log{"-[XAdView loadAdWithParameters:]"};
  if (flags_.firstAdRequest || waits() || remainingDistance() > Seconds{0}) return;
  platformLog("Refreshing the Ad...");
  loadAd();
}

// An answer that never comes is not waited for longer than any exchange may take.
bool AdViewLoader::waits() const {
  return flags_.waiting && lastRequest_ &&
         environment_->platform().runLoop->now() - *lastRequest_ <
             environment_->limits().requestDeadline;
}

Seconds AdViewLoader::remainingDistance() const {
  if (!lastRequest_) return Seconds{0};
  return *lastRequest_ + environment_->limits().automaticRequestDistance -
         environment_->platform().runLoop->now();
}

void AdViewLoader::whenDue(void (AdViewLoader::*load)()) {
  const Seconds remaining = remainingDistance();
  if (remaining <= Seconds{0}) return (this->*load)();
  postponed_ = environment_->platform().runLoop->after(remaining, relay().call(load));
}

RefreshFacts AdViewLoader::facts() const {
  RefreshFacts current = host_.refreshFacts();
  current.deviceLocked = flags_.deviceLocked;
  current.timerFired = flags_.timerFired;
  current.firstAdRequest = flags_.firstAdRequest;
  return current;
}

void AdViewLoader::refreshAd() {
  const OperationLog log{"-[XAdView refreshAd]"};
  flags_.decidedUnseen = !host_.refreshFacts().visible;
  if (!mayKeepRefreshing(facts())) {
    adRefreshTimer_.invalidate();
    flags_.timerFired = false;
    flags_.deviceLocked = false;
  }
  // A load that fails at once comes back here while the new timer is fired for the first time: the
  // timer is there already, and firing another one would never end.
  if (const RefreshFacts current = facts(); !flags_.arming && mustArmRefresh(current)) {
    armTimer(current.interval);
  }
  if (!adRefreshTimer_.isValid()) flags_.timerFired = false;
}

// An ad can arrive before its window is on the screen, and nothing would start its refresh later.
void AdViewLoader::didAppearOnScreen() {
  if (flags_.decidedUnseen) refreshAd();
}

// The order matters: the timer is fired while a first request still counts as one, so that a first
// arming loads nothing and a re-arming after a stop loads at once.
void AdViewLoader::armTimer(float interval) {
  adRefreshTimer_ = environment_->platform().runLoop->every(
      Seconds{interval}, relay().call(&AdViewLoader::loadAdWithParameters));
  flags_.arming = true;
  loadAdWithParameters();
  flags_.arming = false;
  flags_.timerFired = true;
  flags_.firstAdRequest = false;
}

void AdViewLoader::stop() {
  internetAccess_.reset();
  adRefreshTimer_.invalidate();
  postponed_.invalidate();
  flags_.waiting = false;
}

Relay<AdViewLoader> AdViewLoader::relay() {
  return Relay<AdViewLoader>{sharedPart(host_.hold(), *this)};
}

template <typename Handler>
Subscription AdViewLoader::subscribe(std::string_view name, Handler handler) {
  return environment_->notifications().subscribe(name, relay().call(handler));
}

void AdViewLoader::setOrientationNotification() {
  const OperationLog log{"-[XAdView setOrientationNotification]"};
  using Self = AdViewLoader;
  orientation_ = subscribe(notifications::deviceOrientationDidChange, &Self::orientatioDidChange);
  windowSize_ = subscribe(notifications::windowSizeDidChange, &Self::orientatioDidChange);
  lock_ = subscribe(notifications::screenLocked, &Self::onDeviceScreenLock);
}

void AdViewLoader::setEnterForegroundNotification() {
  const OperationLog log{"-[XAdView setEnterForegroundNotification]"};
  if (!isMraid(host_.refreshFacts().subType)) return;
  using Self = AdViewLoader;
  background_ = subscribe(notifications::didEnterBackground, &Self::didEnterBackground);
  foreground_ = subscribe(notifications::willEnterForeground, &Self::didEnterForeground);
  memoryWarning_ =
      subscribe(notifications::didReceiveMemoryWarning, &Self::didReceiveMemoryWarning);
}

void AdViewLoader::didInternetAccessChange(const Notification& notification) {
  const OperationLog log{"-[XAdView didInternetAccessChange:]"};
  const auto available = notification.userInfo.find("Available");
  if (available == notification.userInfo.end() || available->second == 0) {
    platformLog("Internet is not available, do not load any ad, Invalidate the refresh timer");
    flags_.adLoaded = false;
    adRefreshTimer_.invalidate();
    postponed_.invalidate();
    return;
  }
  platformLog("Internet Available");
  const MobileAdSubTypes subType = host_.refreshFacts().subType;
  if (!isMraid(subType) && subType != MobileAdSubTypes::unknown) return;
  flags_.firstAdRequest = true;
  platformLog("Internet available, Reload Ad");
  whenDue(&AdViewLoader::loadAd);
}

void AdViewLoader::didEnterBackground() {
  const OperationLog log{"-[XAdView didEnterBackground:]"};
  flags_.enterBackground = true;
  auto& application = *environment_->platform().application;
  if (application.isStatusBarHidden()) {
    application.setStatusBarHidden(false, StatusBarAnimation::none);
  }
  host_.leaveForBackground();
}

void AdViewLoader::didEnterForeground() {
  const OperationLog log{"-[XAdView didEnterForeground:]"};
  const RefreshFacts current = facts();
  if (!isMraid(current.subType) || current.type == MobileAdTypes::interstitial) return;
  platformLog("isDeviceLocked: " + std::to_string(static_cast<int>(flags_.deviceLocked)) +
              ", isEnterBackground: " + std::to_string(static_cast<int>(flags_.enterBackground)));
  if (!flags_.deviceLocked && !flags_.enterBackground) return;
  flags_.firstAdRequest = true;
  flags_.enterBackground = false;
  platformLog("Request for a new ad as applicaiton entered foregrond");
  whenDue(&AdViewLoader::reload);
}

void AdViewLoader::onDeviceScreenLock() {
  const OperationLog log{"-[XAdView onDeviceScreenLock:]"};
  flags_.deviceLocked = true;
  host_.didLockScreen();
}

}  // namespace tavo
