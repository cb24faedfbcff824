#include "Scene/Window.h"

#include <utility>
#include <vector>

#include <tavo/ViewController.h>

#include "Rules/OrientationRules.h"

namespace tavo {

namespace {

// Whoever hears of it may change the tree.
void tellCoverBelow(View& view) {
  view.coverDidChange();
  const auto below = view.subviews();
  for (const auto& subview : below) tellCoverBelow(*subview);
}

}  // namespace

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

// Each presented controller is given its place once for each size of the window.
void Window::layoutSubviews() {
  const auto shape = orientationOf(bounds().size());
  const bool turns = std::exchange(shape_, shape) != shape;
  std::vector<std::shared_ptr<ViewController>> presented;
  for (auto* next = root_ ? root_->presentedViewController() : nullptr; next != nullptr;
       next = next->presentedViewController()) {
    presented.push_back(next->shared_from_this());
  }
  for (const auto& controller : presented) controller->takePlace(*this, turns);
}

// Asked also while a controller makes its view: one that stands nowhere yet does not count.
Size Window::interfaceSize() const {
  const Size whole = bounds().size();
  const bool isWide = isLandscape(orientationOf(whole));
  for (auto* next = root_ ? root_->presentedViewController() : nullptr; next != nullptr;
       next = next->presentedViewController()) {
    const bool stands = next->orientation_ != InterfaceOrientation::unknown;
    if (stands && isLandscape(next->orientation_) != isWide) return next->view()->frame().size();
  }
  return whole;
}

void Window::tellCover() {
  const auto held = shared_from_this();
  tellCoverBelow(*this);
}

ViewController* Window::topViewController() const {
  ViewController* top = root_.get();
  while (top != nullptr && top->presentedViewController() != nullptr) {
    top = top->presentedViewController();
  }
  return top;
}

}  // namespace tavo
