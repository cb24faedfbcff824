#pragma once

#include <memory>

#include <tavo/View.h>

#include "Scene/Spinner.h"

namespace tavo {

// Covers a view with a turning wheel, clear all around it. Made with `create`; the caller keeps it.
// Main thread only.
class ActivityIndicator : public View {
 public:
  // `view` is covered while the indicator is shown; it is held weakly.
  [[nodiscard]] static std::shared_ptr<ActivityIndicator> create(const std::shared_ptr<View>& view);

  // Puts the indicator in front of everything in its parent; nothing once that is gone.
  void show();
  void hide();

  [[nodiscard]] std::shared_ptr<View> parentView() const { return parentView_.lock(); }
  [[nodiscard]] const std::shared_ptr<Spinner>& activityIndicator() const { return wheel_; }

 private:
  explicit ActivityIndicator(const Rect& frame) : View{frame} {}
  void placeWheel(const View& parent);

  std::weak_ptr<View> parentView_;
  std::shared_ptr<Spinner> wheel_ = std::make_shared<Spinner>();
};

}  // namespace tavo
