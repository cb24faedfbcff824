#include "Gtk/Scene/SpinnerWidget.h"

namespace tavo::gtk {

SpinnerWidget::SpinnerWidget(const std::shared_ptr<tavo::Spinner>& spinner) : spinner_{spinner} {
  get_style_context()->add_provider(style_, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  sync();
}

void SpinnerWidget::sync() {
  const auto spinner = spinner_.lock();
  if (!spinner) return;
  set_visible(!spinner->isHidden());
  set_opacity(spinner->alpha());
  set_spinning(spinner->isAnimating());
  if (color_ == spinner->color()) return;
  color_ = spinner->color();
  const Gdk::RGBA color{color_->red, color_->green, color_->blue, color_->alpha};
  style_->load_from_data("spinner { color: " + color.to_string() + "; }");
}

}  // namespace tavo::gtk
