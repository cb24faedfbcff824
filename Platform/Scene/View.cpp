#include <algorithm>

#include <tavo/View.h>

#include "Runtime/MainThread.h"
#include "Scene/Window.h"

namespace tavo {

namespace {

// One axis of a frame after its superview went from length `from` to `to`. What is flexible shares
// the difference in proportion to its present length; nothing flexible: the leading margin stays.
struct Span {
  double start = 0;
  double length = 0;
};

Span resized(Span span, double from, double to, bool leading, bool middle, bool trailing) {
  const double before = span.start;
  const double after = from - span.start - span.length;
  const double flexible =
      (leading ? before : 0) + (middle ? span.length : 0) + (trailing ? after : 0);
  const double difference = to - from;
  if (!leading && !middle) return span;
  if (flexible == 0) {
    const double share = difference / (leading + middle + trailing);
    return {span.start + (leading ? share : 0), span.length + (middle ? share : 0)};
  }
  const double factor = difference / flexible;
  return {span.start + (leading ? before * factor : 0),
          std::max(0.0, span.length + (middle ? span.length * factor : 0))};
}

constexpr float invisibleAlpha = 0.01F;

}  // namespace

View::View(Rect frame) : frame_{frame} {}

View::~View() {
  for (const auto& subview : subviews_) subview->superview_ = nullptr;
}

void View::changed() {
  for (View* view = this; view != nullptr; view = view->superview_) {
    if (view->listener_ != nullptr) view->listener_->treeChanged();
  }
}

void View::setFrame(const Rect& frame) {
  requireMainThread("View::setFrame");
  if (frame == frame_) return;
  const Size before = frame_.size();
  frame_ = frame;
  if (before != frame.size()) {
    if (autoresizesSubviews_) {
      const auto current = subviews_;
      for (const auto& subview : current) subview->resizeFor(before, frame.size());
    }
    layoutSubviews();
  }
  changed();
}

void View::resizeFor(Size from, Size to) {
  const auto has = [this](unsigned bit) { return (autoresizingMask_ & bit) != 0; };
  const Span horizontal =
      resized({frame_.x, frame_.width}, from.width, to.width, has(flexibleLeftMargin),
              has(flexibleWidth), has(flexibleRightMargin));
  const Span vertical =
      resized({frame_.y, frame_.height}, from.height, to.height, has(flexibleTopMargin),
              has(flexibleHeight), has(flexibleBottomMargin));
  setFrame({horizontal.start, vertical.start, horizontal.length, vertical.length});
}

void View::setTurned(bool turned) { change(turned_, turned); }

Point View::fromSuperview(Point point) const {
  const Point moved{point.x - frame_.x, point.y - frame_.y};
  return turned_ ? Point{moved.y, frame_.height - moved.x} : moved;
}

Rect View::toSuperview(const Rect& rect) const {
  if (!turned_) return rect.movedBy(frame_.x, frame_.y);
  return Rect{frame_.height - rect.bottom(), rect.x, rect.height, rect.width}.movedBy(frame_.x,
                                                                                      frame_.y);
}

void View::setHidden(bool hidden) {
  requireMainThread("View::setHidden");
  change(hidden_, hidden);
}

void View::setAlpha(float alpha) {
  requireMainThread("View::setAlpha");
  change(alpha_, std::clamp(alpha, 0.0F, 1.0F));
}

void View::setBackgroundColor(std::optional<Color> color) {
  requireMainThread("View::setBackgroundColor");
  change(backgroundColor_, color);
}

void View::setBackgroundPattern(Image pattern) { change(backgroundPattern_, std::move(pattern)); }

void View::setClipsToBounds(bool clips) { change(clipsToBounds_, clips); }

void View::setUserInteractionEnabled(bool enabled) {
  requireMainThread("View::setUserInteractionEnabled");
  change(userInteractionEnabled_, enabled);
}

void View::setAccessibilityLabel(std::string label) {
  change(accessibilityLabel_, std::move(label));
}

Window* View::window() {
  View* top = this;
  while (top->superview_ != nullptr) top = top->superview_;
  return top->isWindow() ? static_cast<Window*>(top) : nullptr;
}

const Window* View::window() const { return const_cast<View*>(this)->window(); }

bool View::isDescendantOf(const View& ancestor) const {
  for (const View* view = this; view != nullptr; view = view->superview_) {
    if (view == &ancestor) return true;
  }
  return false;
}

std::shared_ptr<View> View::detach(View& view) {
  const auto found = std::find_if(subviews_.begin(), subviews_.end(),
                                  [&](const auto& subview) { return subview.get() == &view; });
  if (found == subviews_.end()) return nullptr;
  auto held = *found;
  subviews_.erase(found);
  held->superview_ = nullptr;
  changed();
  return held;
}

void View::addSubview(const std::shared_ptr<View>& view) {
  requireMainThread("View::addSubview");
  if (!view || isDescendantOf(*view)) return;
  // The former superview may be its only owner.
  const auto held = view->shared_from_this();
  if (view->superview_ == this) {
    bringSubviewToFront(*view);
    return;
  }
  held->willMoveToSuperview(this);
  if (held->superview_ != nullptr) (void)held->superview_->detach(*held);
  if (isDescendantOf(*held)) return;  // the tree was changed from inside
  subviews_.push_back(held);
  held->superview_ = this;
  changed();
}

void View::removeFromSuperview() {
  requireMainThread("View::removeFromSuperview");
  if (superview_ == nullptr) return;
  const auto held = shared_from_this();
  willMoveToSuperview(nullptr);
  if (superview_ != nullptr) (void)superview_->detach(*this);
}

void View::removeAllSubviews() {
  requireMainThread("View::removeAllSubviews");
  while (!subviews_.empty()) {
    const auto last = subviews_.back();
    last->removeFromSuperview();
  }
}

void View::bringSubviewToFront(const View& view) {
  requireMainThread("View::bringSubviewToFront");
  const auto found = std::find_if(subviews_.begin(), subviews_.end(),
                                  [&](const auto& subview) { return subview.get() == &view; });
  if (found == subviews_.end() || *found == subviews_.back()) return;
  std::rotate(found, found + 1, subviews_.end());
  changed();
}

Rect View::convertTo(const View* target, const Rect& rect) const {
  Rect converted = rect;
  for (const View* view = this; view != nullptr && view != target; view = view->superview_) {
    converted = view->toSuperview(converted);
  }
  if (target == nullptr || isDescendantOf(*target)) return converted;
  // `target` is elsewhere in the tree: go down from the top to it.
  const Rect top = target->convertTo(nullptr, {});
  return converted.movedBy(-top.x, -top.y);
}

View* View::hitTest(Point point) {
  if (hidden_ || alpha_ < invisibleAlpha || !userInteractionEnabled_ || !bounds().contains(point)) {
    return nullptr;
  }
  for (auto subview = subviews_.rbegin(); subview != subviews_.rend(); ++subview) {
    if (View* hit = (*subview)->hitTest((*subview)->fromSuperview(point))) return hit;
  }
  return this;
}

void View::addTapRecognizer(std::shared_ptr<TapRecognizer> recognizer) {
  requireMainThread("View::addTapRecognizer");
  tapRecognizers_.push_back(std::move(recognizer));
  changed();
}

void View::removeTapRecognizer(const TapRecognizer& recognizer) {
  std::erase_if(tapRecognizers_, [&](const auto& known) { return known.get() == &recognizer; });
  changed();
}

ViewController* View::nearestController() const {
  for (const View* view = this; view != nullptr; view = view->superview_) {
    if (view->controller_ != nullptr) return view->controller_;
  }
  return nullptr;
}

}  // namespace tavo
