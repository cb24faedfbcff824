#pragma once

#include <functional>
#include <memory>

#include <tavo/Export.h>
#include <tavo/InterfaceOrientation.h>
#include <tavo/View.h>

namespace tavo {

// How a presented controller stands above the one that presents it: with what is behind taken out
// of sight, or still there. Transitions are hints that a platform without animations may ignore.
enum class ModalPresentation { fullScreen, overFullScreen };
enum class ModalTransition { coverVertical, crossDissolve };
enum class Animated { no, yes };

// A set of orientations; bits: 1 << orientation.
using OrientationMask = unsigned;
[[nodiscard]] constexpr OrientationMask maskOf(InterfaceOrientation orientation) {
  return 1U << static_cast<unsigned>(orientation);
}
inline constexpr OrientationMask allOrientations =
    maskOf(InterfaceOrientation::portrait) | maskOf(InterfaceOrientation::portraitUpsideDown) |
    maskOf(InterfaceOrientation::landscapeRight) | maskOf(InterfaceOrientation::landscapeLeft);
inline constexpr OrientationMask landscapeOrientations =
    maskOf(InterfaceOrientation::landscapeRight) | maskOf(InterfaceOrientation::landscapeLeft);

class Window;

// Looks after one view that fills the screen or a part of it, and presents other controllers above
// it. An interstitial is one; the one behind a window's content comes from the platform
// (gtk::rootViewControllerOf).
//
// Made with std::make_shared (or the `create` of its class) only. A presenting controller owns the
// one that it presents; the pointers back are valid while it does. Main thread only. Appearance
// operations run inside the call that presents or dismisses, each once, in the order of their
// names; a controller may be dropped inside any of them.
class TAVO_EXPORT ViewController : public std::enable_shared_from_this<ViewController> {
 public:
  ViewController() = default;
  virtual ~ViewController();
  ViewController(const ViewController&) = delete;
  ViewController& operator=(const ViewController&) = delete;

  // The view, made on the first call (loadView, then viewDidLoad).
  [[nodiscard]] const std::shared_ptr<View>& view();
  [[nodiscard]] bool isViewLoaded() const { return view_ != nullptr; }

  [[nodiscard]] ViewController* presentedViewController() const { return presented_.get(); }
  [[nodiscard]] ViewController* presentingViewController() const { return presenting_; }
  // From viewWillDisappear to the end of viewDidDisappear of a dismissal.
  [[nodiscard]] bool isBeingDismissed() const { return beingDismissed_; }

  // Shows `controller` above this one, filling the window, then calls `completion` within the same
  // turn. Does nothing (and calls nothing) when this controller's view is in no window, when it
  // presents already, or when `controller` is presented already.
  void presentViewController(const std::shared_ptr<ViewController>& controller, Animated animated,
                             const std::function<void()>& completion = {});

  // Takes away what this controller presents; when it presents nothing, it takes itself away.
  // `completion` is called within the same turn, once the views are gone. Does nothing when there
  // is nothing to take away.
  void dismissViewController(Animated animated, const std::function<void()>& completion = {});

  // Set before the controller is presented.
  ModalPresentation modalPresentationStyle = ModalPresentation::fullScreen;
  ModalTransition modalTransitionStyle = ModalTransition::coverVertical;

  // Orientation rules of a presented controller: what it supports is asked when it is presented and
  // when the window turns, whether it follows then too. One that allows a single way stands that
  // way in every window, in a part of it with bars beside or turned, as the platform is set.
  [[nodiscard]] virtual bool shouldAutorotate() const { return true; }
  [[nodiscard]] virtual OrientationMask supportedInterfaceOrientations() const {
    return allOrientations;
  }
  [[nodiscard]] virtual InterfaceOrientation preferredInterfaceOrientationForPresentation() const {
    return InterfaceOrientation::portrait;
  }
  // The rules have other answers now: a presented controller takes its place anew.
  void orientationRulesDidChange();
  // The user wants to leave, by the Escape key or what stands for it. True uses the key up: the
  // controller is gone, or it may not be left yet. False leaves the key to the host.
  virtual bool cancelOperation() { return false; }
  // Told after the window has a new shape.
  virtual void didRotateFromInterfaceOrientation(InterfaceOrientation /*from*/) {}

 protected:
  // Makes the view; the default is a plain one of zero size.
  [[nodiscard]] virtual std::shared_ptr<View> loadView();
  virtual void viewDidLoad() {}
  virtual void viewWillAppear(Animated /*animated*/) {}
  virtual void viewDidAppear(Animated /*animated*/) {}
  virtual void viewWillDisappear(Animated /*animated*/) {}
  virtual void viewDidDisappear(Animated /*animated*/) {}

 private:
  friend class Window;

  void takeAwayPresented(Animated animated);
  void takePlace(Window& window, bool mayTurn);
  void setBackdrop(Window& window, bool needed);

  std::shared_ptr<View> view_;
  std::shared_ptr<ViewController> presented_;
  ViewController* presenting_ = nullptr;
  bool beingDismissed_ = false;
  InterfaceOrientation orientation_ = InterfaceOrientation::unknown;  // while it is presented
  std::shared_ptr<View> backdrop_;                                    // the bars beside it
};

}  // namespace tavo
