#include <algorithm>

#include <tavo/ViewController.h>

#include "Rules/OrientationRules.h"
#include "Runtime/MainThread.h"
#include "Scene/Window.h"

namespace tavo {

namespace {

void tellCoverInWindow(const std::shared_ptr<View>& view) {
  Window* const window = view ? view->window() : nullptr;
  if (window != nullptr) window->tellCover();
}

}  // namespace

ViewController::~ViewController() {
  if (presented_) presented_->presenting_ = nullptr;
  if (view_) view_->controller_ = nullptr;
  if (backdrop_) backdrop_->removeFromSuperview();
}

std::shared_ptr<View> ViewController::loadView() { return std::make_shared<View>(); }

const std::shared_ptr<View>& ViewController::view() {
  requireMainThread("ViewController::view");
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
  requireMainThread("ViewController::presentViewController");
  if (!controller || presented_ || controller->presenting_ != nullptr || !view_) return;
  Window* window = view_->window();
  if (window == nullptr) return;
  const auto held = shared_from_this();
  presented_ = controller;
  controller->presenting_ = this;
  controller->orientation_ = InterfaceOrientation::unknown;
  const auto& view = controller->view();
  controller->viewWillAppear(animated);
  window->addSubview(view);
  controller->takePlace(*window, true);
  controller->viewDidAppear(animated);
  tellCoverInWindow(view_);
  if (completion) completion();
}

void ViewController::dismissViewController(Animated animated,
                                           const std::function<void()>& completion) {
  requireMainThread("ViewController::dismissViewController");
  ViewController* presenter = presented_ ? this : presenting_;
  if (presenter == nullptr) return;
  const auto held = shared_from_this();
  const auto heldPresenter = presenter->shared_from_this();
  presenter->takeAwayPresented(animated);
  if (completion) completion();
}

void ViewController::orientationRulesDidChange() {
  Window* const window = presenting_ != nullptr && view_ ? view_->window() : nullptr;
  if (window != nullptr) takePlace(*window, true);
}

void ViewController::takePlace(Window& window, bool mayTurn) {
  if (presenting_ == nullptr || !view_) return;
  const auto held = shared_from_this();
  const Size size = window.bounds().size();
  const auto shape = orientationOf(size);
  if (mayTurn && shape != InterfaceOrientation::unknown) {
    // A new one begins as the window is; whoever stands is asked whether it follows.
    const bool follows = orientation_ == InterfaceOrientation::unknown || shouldAutorotate();
    orientation_ =
        allowedOrientation(supportedInterfaceOrientations(), follows ? shape : orientation_);
  }
  const auto place = placeIn(size, orientation_, window.orientationFit());
  const bool fills = place.frame.size() == size;
  setBackdrop(window, !place.turned && !fills);
  view_->setAutoresizingMask(fills ? flexibleWidth | flexibleHeight : flexibleNothing);
  view_->setTurned(place.turned);
  view_->setFrame(place.frame);
}

// Right behind the view, so that nothing of what it covers can be seen or touched.
void ViewController::setBackdrop(Window& window, bool needed) {
  if (needed == (backdrop_ != nullptr)) return;
  if (!needed) {
    backdrop_->removeFromSuperview();
    backdrop_.reset();
    return;
  }
  const auto all = window.subviews();
  const auto own = std::find(all.begin(), all.end(), view_);
  backdrop_ = std::make_shared<View>(window.bounds());
  backdrop_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  backdrop_->setBackgroundColor(colors::black);
  window.addSubview(backdrop_);
  std::for_each(own, all.end(), [&](const auto& view) { window.bringSubviewToFront(*view); });
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
  if (const auto bars = std::move(leaving->backdrop_)) bars->removeFromSuperview();
  leaving->viewDidDisappear(animated);
  leaving->beingDismissed_ = false;
  tellCoverInWindow(view_);
}

}  // namespace tavo
