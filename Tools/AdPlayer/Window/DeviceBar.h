#pragma once

#include <gtkmm.h>

#include <functional>
#include <string>

#include "AdPlayer/Stage/Stage.h"
#include "AdPlayer/Window/ScaledBin.h"

namespace tavo::adplayer {

// What a person can do to the simulated phone.
class DeviceBar : public Gtk::Box {
 public:
  DeviceBar(Stage& stage, Phone& phone, ScaledBin& place);

  void rotate();
  [[nodiscard]] unsigned preset() const { return presets_.get_selected(); }
  void setPreset(unsigned preset) { presets_.set_selected(preset); }
  [[nodiscard]] unsigned scale() const { return scales_.get_selected(); }
  void setScale(unsigned scale) { scales_.set_selected(scale); }

 private:
  void addSwitch(Gtk::ToggleButton& button, const char* icon, const char* name,
                 std::function<void(bool)> switched);
  void addButton(const char* icon, const char* name, std::function<void()> pressed);
  void addDevice(Gtk::ToggleButton& button, const char* icon, const char* name, DeviceEvent on,
                 DeviceEvent off);

  Stage& stage_;
  Phone& phone_;
  Gtk::Box signs_{Gtk::Orientation::HORIZONTAL, 0};
  Gtk::DropDown presets_;
  Gtk::DropDown scales_;
  Gtk::ToggleButton statusBar_;
  Gtk::ToggleButton locked_;
  Gtk::ToggleButton background_;
  Gtk::ToggleButton offline_;
  Gtk::ToggleButton hidden_;
  Gtk::ToggleButton covered_;
  Gtk::ToggleButton scrolled_;
};

}  // namespace tavo::adplayer
