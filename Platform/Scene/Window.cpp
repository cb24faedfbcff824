#include "Scene/Window.h"

#include <tavo/ViewController.h>

namespace tavo {

Window::~Window() { removeAllSubviews(); }

void Window::setRootViewController(const std::shared_ptr<ViewController>& controller) {
  if (controller == root_) return;
  if (root_ && root_->isViewLoaded()) root_->view()->removeFromSuperview();
  root_ = controller;
  if (!root_) return;
  const auto& view = root_->view();
  view->setFrame(bounds());
  view->setAutoresizingMask(flexibleWidth | flexibleHeight);
  addSubview(view);
  const auto others = subviews();
  for (const auto& other : others) {
    if (other != view) bringSubviewToFront(*other);
  }
}

ViewController* Window::topViewController() const {
  ViewController* top = root_.get();
  while (top != nullptr && top->presentedViewController() != nullptr) {
    top = top->presentedViewController();
  }
  return top;
}

}  // namespace tavo
