#include "UserInterface/ActivityIndicator/ActivityIndicator.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

std::shared_ptr<ActivityIndicator> ActivityIndicator::create(const std::shared_ptr<View>& view) {
  const OperationLog log{"-[ActivityIndicator initWithView:]"};
  if (!view) return nullptr;
  std::shared_ptr<ActivityIndicator> indicator{new ActivityIndicator{view->bounds()}};
  indicator->parentView_ = view;
  indicator->wheel_->setColor(colors::darkGray);
  indicator->placeWheel(*view);
  indicator->addSubview(indicator->wheel_);
  indicator->setBackgroundColor(colors::clear);
  return indicator;
}

// Quirk: the wheel stands five points above the middle.
void ActivityIndicator::placeWheel(const View& parent) {
  wheel_->setFrame({parent.frame().width / 2 - 25, parent.frame().height / 2 - 30, 50, 50});
}

void ActivityIndicator::show() {
  const OperationLog log{"-[ActivityIndicator show]"};
  const auto parent = parentView_.lock();
  if (!parent) return;
  setFrame(parent->frame());
  placeWheel(*parent);
  wheel_->startAnimating();
  parent->addSubview(shared_from_this());
}

void ActivityIndicator::hide() {
  const OperationLog log{"-[ActivityIndicator hide]"};
  wheel_->stopAnimating();
  removeFromSuperview();
}

}  // namespace tavo
