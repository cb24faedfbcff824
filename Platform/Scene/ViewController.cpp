#include <tavo/ViewController.h>

#include "Scene/Window.h"

namespace tavo {

ViewController::~ViewController() {
  if (presented_) presented_->presenting_ = nullptr;
  if (view_) view_->controller_ = nullptr;
}

std::shared_ptr<View> ViewController::loadView() { return std::make_shared<View>(); }

const std::shared_ptr<View>& ViewController::view() {
  if (!view_) {
    view_ = loadView();
    view_->controller_ = this;
    viewDidLoad();
  }
  return view_;
}

void ViewController::presentViewController(const std::shared_ptr<ViewController>& controller,
                                           Animated animated,
                                           const std::function<void()>& completion) {
  if (!controller || presented_ || controller->presenting_ != nullptr || !view_) return;
  Window* window = view_->window();
  if (window == nullptr) return;
  const auto held = shared_from_this();
  presented_ = controller;
  controller->presenting_ = this;
  const auto& view = controller->view();
  controller->viewWillAppear(animated);
  view->setFrame(window->bounds());
  view->setAutoresizingMask(flexibleWidth | flexibleHeight);
  window->addSubview(view);
  controller->viewDidAppear(animated);
  if (completion) completion();
}

void ViewController::dismissViewController(Animated animated,
                                           const std::function<void()>& completion) {
  ViewController* presenter = presented_ ? this : presenting_;
  if (presenter == nullptr) return;
  const auto held = shared_from_this();
  const auto heldPresenter = presenter->shared_from_this();
  presenter->takeAwayPresented(animated);
  if (completion) completion();
}

void ViewController::takeAwayPresented(Animated animated) {
  const auto leaving = std::move(presented_);
  presented_ = nullptr;
  if (!leaving) return;  // dismissed again from inside its own dismissal
  if (leaving->presented_) leaving->takeAwayPresented(Animated::no);
  leaving->beingDismissed_ = true;
  leaving->viewWillDisappear(animated);
  leaving->presenting_ = nullptr;
  if (leaving->view_) leaving->view_->removeFromSuperview();
  leaving->viewDidDisappear(animated);
  leaving->beingDismissed_ = false;
}

}  // namespace tavo
