#pragma once

#include <functional>
#include <memory>

#include <tavo/Button.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/Platform.h>

#include "Runtime/Environment.h"
#include "UserInterface/WebView/BaseViews/InterstitialCloseButton.h"

namespace tavo {

class XAdInterstitialViewController;

// The close button of an interstitial, in the kind that the ad wants; the one of a video is the
// video's own. Main thread only.
class InterstitialCloseControl {
 public:
  // The environment outlives the control.
  InterstitialCloseControl(Environment& environment, XAdInterstitialViewController& controller)
      : environment_{environment}, controller_{controller} {}

  // Null while there is none.
  [[nodiscard]] const std::shared_ptr<Button>& button() const { return button_; }

  // Each does nothing where the rules do not allow the button.
  void add();
  void addWithoutImage();
  void addForRedirect();
  // The creative has said who draws the control.
  void useCustomCloseDidChange();

  // Takes the button away.
  void remove();
  // Forgets the button, which stays where it is until another one comes.
  void drop() { button_.reset(); }

 private:
  enum class Look { picture, invisible };
  [[nodiscard]] CloseButtonFacts facts() const;
  [[nodiscard]] bool isShown() const;
  void put(Look look);

  Environment& environment_;
  XAdInterstitialViewController& controller_;
  std::shared_ptr<Button> button_;
  std::weak_ptr<Button> shown_;  // also when it is forgotten
};

}  // namespace tavo
