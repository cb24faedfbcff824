#pragma once

#include <gtkmm.h>

#include <functional>
#include <optional>
#include <string>

#include <tavo/XAdSlotConfiguration.h>

#include "AdPlayer/Source/Opening.h"

namespace tavo::adplayer {

// The settings of the slot for the next load.
class SlotPanel : public Gtk::ScrolledWindow {
 public:
  SlotPanel();

  // A setting was changed.
  std::function<void()> onChange{};

  [[nodiscard]] XAdSlotConfiguration settings() const;
  [[nodiscard]] std::optional<Placement> placement() const;
  [[nodiscard]] std::optional<Size> size() const;
  [[nodiscard]] SourceOptions server() const;
  [[nodiscard]] bool givesAddress() const { return givesAddress_.get_active(); }

 private:
  void addRow(const char* title, const char* help, Gtk::Widget& control);
  void addTitle(const char* title);

  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  Gtk::ListBox* group_ = nullptr;
  Gtk::DropDown placement_;
  Gtk::DropDown sizes_;
  Gtk::Entry ownSize_;
  Gtk::Switch standards_;
  Gtk::Switch scaling_;
  Gtk::Switch aspect_;
  Gtk::SpinButton refresh_;
  Gtk::Switch inAppBrowser_;
  Gtk::Switch childDirected_;
  Gtk::Switch bidding_;
  Gtk::Switch confines_;
  Gtk::SpinButton skipAfter_;
  Gtk::Switch givesAddress_;
  Gtk::Entry page_;
  Gtk::Entry position_;
};

}  // namespace tavo::adplayer
