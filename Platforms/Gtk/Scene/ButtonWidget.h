#pragma once

#include <gtkmm.h>

#include <memory>
#include <optional>
#include <string>

#include <tavo/Button.h>

namespace tavo::gtk {

// Shows a button of the scene as one of the toolkit's, so that keyboard and assistive technology
// reach it, drawn without the toolkit's own frame and padding. Main thread only.
class ButtonWidget : public Gtk::Button {
 public:
  explicit ButtonWidget(const std::shared_ptr<tavo::Button>& button);

  // Follows the scene's button.
  void sync();

 protected:
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  void pressed();
  void nameIt(const tavo::Button& button);
  void showTitle(const tavo::Button& button);

  std::weak_ptr<tavo::Button> button_;
  Gtk::Picture picture_;
  Gtk::Label title_;
  std::string name_;
  std::optional<ButtonTitleStyle> titleStyle_;  // as it is written now
};

}  // namespace tavo::gtk
