#pragma once

#include <memory>

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

  // The controller that is in front: the last one presented, or the root one.
  [[nodiscard]] ViewController* topViewController() const;

 protected:
  [[nodiscard]] bool isWindow() const override { return true; }

 private:
  std::shared_ptr<ViewController> root_;
};

}  // namespace tavo
