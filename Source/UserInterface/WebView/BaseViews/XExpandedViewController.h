#pragma once

#include <functional>
#include <memory>

#include <tavo/Observer.h>
#include <tavo/ViewController.h>

namespace tavo {

class Environment;
class XExpandedViewController;

struct XExpandedViewControllerDelegate {
  // The window has a new shape.
  std::function<void(XExpandedViewController&)> XExpandedViewControllerDidRotate{};
  // The user wants to leave by the keyboard or by the window's own close button.
  std::function<void(XExpandedViewController&)> XExpandedViewControllerDidCancel{};
};

// The full screen that an expanded ad stands on. It keeps the creative's rules about orientation.
// Main thread only.
class XExpandedViewController : public ViewController {
 public:
  explicit XExpandedViewController(std::shared_ptr<Environment> environment);

  bool allowRotation = true;               // the creative bears changes of the orientation
  InterfaceOrientation forcedOrientation;  // the one to keep where it does not
  Observer<XExpandedViewControllerDelegate> delegate;

  [[nodiscard]] bool shouldAutorotate() const override;
  [[nodiscard]] bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation) const;
  [[nodiscard]] OrientationMask supportedInterfaceOrientations() const override;
  [[nodiscard]] InterfaceOrientation preferredInterfaceOrientationForPresentation() const override;
  void didRotateFromInterfaceOrientation(InterfaceOrientation from) override;
  bool cancelOperation() override;

  // Keeps the orientation from now on. When it is presented it is so anew, for the system to look
  // at its rules again.
  void forceRotateToInterfaceOrientation(InterfaceOrientation orientation);

 protected:
  void viewDidLoad() override;

 private:
  const std::shared_ptr<Environment> environment_;
};

}  // namespace tavo
