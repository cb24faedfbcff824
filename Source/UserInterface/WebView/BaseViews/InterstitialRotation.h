#pragma once

#include <memory>

#include "UserInterface/WebView/BaseViews/InterstitialOrientation.h"

namespace tavo {

class Environment;
class XAdInterstitialViewController;

// How an interstitial follows its screen: the creative's rules, the ad's size, and who hears of a
// change. Main thread only.
class InterstitialRotation {
 public:
  InterstitialRotation(std::shared_ptr<Environment> environment,
                       XAdInterstitialViewController& controller);

  // None once the ad was released.
  [[nodiscard]] const OrientationRules& rules() const { return rules_; }
  void setRules(OrientationRules rules) { rules_ = rules; }

  // Videos follow every rotation, and are fitted before it.
  [[nodiscard]] bool shouldAutorotate() const;
  [[nodiscard]] bool shouldAutorotateTo(InterfaceOrientation orientation) const;

  // Gives the ad the whole screen.
  void fitAdView() const;
  // Tells the creative where it stands now.
  void reportLayout() const;
  void didRotate() const;
  void presentAnew() const;

  void willAppear() const;
  void didAppear() const;
  void rememberOrientation() const;

 private:
  [[nodiscard]] bool showsVideo() const;
  void postOrientation() const;

  const std::shared_ptr<Environment> environment_;
  XAdInterstitialViewController& controller_;
  OrientationRules rules_;
};

}  // namespace tavo
