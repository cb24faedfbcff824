#pragma once

#include <gtkmm.h>

#include <memory>
#include <optional>

#include "Scene/Spinner.h"

namespace tavo::gtk {

// Shows a turning wheel of the scene as the toolkit's own. Main thread only.
class SpinnerWidget : public Gtk::Spinner {
 public:
  explicit SpinnerWidget(const std::shared_ptr<tavo::Spinner>& spinner);

  // Follows the scene's wheel.
  void sync();

 private:
  std::weak_ptr<tavo::Spinner> spinner_;
  Glib::RefPtr<Gtk::CssProvider> style_ = Gtk::CssProvider::create();
  std::optional<Color> color_;  // as the style has it
};

}  // namespace tavo::gtk
