#pragma once

#include <memory>

#include <tavo/InterfaceOrientation.h>
#include <tavo/View.h>

namespace tavo {

// The top of a tree that is on the screen. It owns its root view controller, whose view fills it;
// presented controllers stand above that view.
class Window : public View {
 public:
  using View::View;
  ~Window() override;

  [[nodiscard]] const std::shared_ptr<ViewController>& rootViewController() const { return root_; }
  // Puts the controller's view behind everything else, in place of the former one.
  void setRootViewController(const std::shared_ptr<ViewController>& controller);

  // For controllers that allow one orientation only; those that are presented follow the setting
  // from the next size of the window on.
  [[nodiscard]] OrientationFit orientationFit() const { return fit_; }
  void setOrientationFit(OrientationFit fit) { fit_ = fit; }
  // What full-screen content covers: the window, or the part that a presented controller of one
  // orientation has.
  [[nodiscard]] Size interfaceSize() const;

  // The controller that is in front: the last one presented, or the root one.
  [[nodiscard]] ViewController* topViewController() const;

  // Tells every view in it that what stands above may be another.
  void tellCover();

 protected:
  [[nodiscard]] bool isWindow() const override { return true; }
  void layoutSubviews() override;

 private:
  OrientationFit fit_ = OrientationFit::letterbox;
  InterfaceOrientation shape_ = InterfaceOrientation::unknown;
  std::shared_ptr<ViewController> root_;
};

}  // namespace tavo
