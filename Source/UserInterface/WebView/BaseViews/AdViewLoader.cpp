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
  host_.willLoad();
  if (host_.isExpandedOrResized()) return;
  if (!host_.refreshFacts().visible && !flags_.firstAdRequest) return;
  lastRequest_ = environment_->platform().runLoop->now();
  host_.requestAd();
  internetAccess_.reset();
  const RefreshFacts current = facts();
  if (current.subType == MobileAdSubTypes::vastBanner ||
      current.type == MobileAdTypes::interstitial) {
    return;
  }
  internetAccess_ = environment_->notifications().subscribe(
      internetAccessChangedNotification, [this](const Notification& notification) {
        const auto held = host_.hold();
        const auto available = notification.userInfo.find("Available");
        didInternetAccessChange(available != notification.userInfo.end() && available->second != 0);
      });
}

void AdViewLoader::loadAdWithParameters() {
  const OperationLog log{"-[XAdView loadAdWithParameters:]"};
  if (flags_.firstAdRequest || askedJustNow()) return;
  platformLog("Refreshing the Ad...");
  loadAd();
}

bool AdViewLoader::askedJustNow() const {
  return lastRequest_ && environment_->platform().runLoop->now() - *lastRequest_ <
                             environment_->limits().automaticRequestDistance;
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
  adRefreshTimer_ = environment_->platform().runLoop->every(Seconds{interval}, [this] {
    const auto held = host_.hold();
    loadAdWithParameters();
  });
  flags_.arming = true;
  loadAdWithParameters();
  flags_.arming = false;
  flags_.timerFired = true;
  flags_.firstAdRequest = false;
}

void AdViewLoader::stop() {
  internetAccess_.reset();
  adRefreshTimer_.invalidate();
}

Subscription AdViewLoader::subscribe(std::string_view name, void (AdViewLoader::*handler)()) {
  return environment_->notifications().subscribe(name, [this, handler](const Notification&) {
    const auto held = host_.hold();
    (this->*handler)();
  });
}

void AdViewLoader::setOrientationNotification() {
  const OperationLog log{"-[XAdView setOrientationNotification]"};
  orientation_ = environment_->notifications().subscribe(notifications::deviceOrientationDidChange,
                                                         [this](const Notification&) {
                                                           const auto held = host_.hold();
                                                           host_.orientatioDidChange();
                                                         });
  lock_ = subscribe(notifications::screenLocked, &AdViewLoader::onDeviceScreenLock);
}

void AdViewLoader::setEnterForegroundNotification() {
  const OperationLog log{"-[XAdView setEnterForegroundNotification]"};
  if (!isMraid(host_.refreshFacts().subType)) return;
  background_ = subscribe(notifications::didEnterBackground, &AdViewLoader::didEnterBackground);
  foreground_ = subscribe(notifications::willEnterForeground, &AdViewLoader::didEnterForeground);
  memoryWarning_ = environment_->notifications().subscribe(notifications::didReceiveMemoryWarning,
                                                           [this](const Notification&) {
                                                             const auto held = host_.hold();
                                                             host_.didReceiveMemoryWarning();
                                                           });
}

void AdViewLoader::didInternetAccessChange(bool available) {
  const OperationLog log{"-[XAdView didInternetAccessChange:]"};
  if (!available) {
    platformLog("Internet is not available, do not load any ad, Invalidate the refresh timer");
    flags_.adLoaded = false;
    adRefreshTimer_.invalidate();
    return;
  }
  platformLog("Internet Available");
  const MobileAdSubTypes subType = host_.refreshFacts().subType;
  if (!isMraid(subType) && subType != MobileAdSubTypes::unknown) return;
  flags_.firstAdRequest = true;
  platformLog("Internet available, Reload Ad");
  loadAd();
}

void AdViewLoader::didEnterBackground() {
  const OperationLog log{"-[XAdView didEnterBackground:]"};
  flags_.enterBackground = true;
  auto& application = *environment_->platform().application;
  if (application.isStatusBarHidden()) {
    application.setStatusBarHidden(false, StatusBarAnimation::none);
  }
  host_.releaseMemory();
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
  host_.reload();
}

void AdViewLoader::onDeviceScreenLock() {
  const OperationLog log{"-[XAdView onDeviceScreenLock:]"};
  flags_.deviceLocked = true;
  host_.didLockScreen();
}

}  // namespace tavo
