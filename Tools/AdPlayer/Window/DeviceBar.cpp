#include "AdPlayer/Window/DeviceBar.h"

#include <array>
#include <utility>

#include "Gtk/Guarded.h"
#include "Values/Translation.h"

namespace tavo::adplayer {

namespace {

constexpr std::array<std::pair<const char*, double>, 5> scaleChoices{
    {{toTranslate("Fit"), 0}, {"50 %", 0.5}, {"75 %", 0.75}, {"100 %", 1}, {"150 %", 1.5}}};

void name(Gtk::Widget& widget, const char* text) {
  const std::string shown = translated(text);
  widget.set_tooltip_text(shown);
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 shown.c_str(), -1);
}

}  // namespace

DeviceBar::DeviceBar(Stage& stage, Phone& phone, ScaledBin& place)
    : Gtk::Box{Gtk::Orientation::VERTICAL, 4}, stage_{stage}, phone_{phone} {
  add_css_class("stage-bar");
  std::vector<Glib::ustring> names;
  for (const auto& preset : phonePresets()) {
    names.emplace_back(translated(preset.name) + ", " + std::to_string(preset.width) + " x " +
                       std::to_string(preset.height));
  }
  presets_.set_model(Gtk::StringList::create(names));
  presets_.set_selected(1);
  name(presets_, toTranslate("Size of the phone"));
  presets_.property_selected().signal_changed().connect(gtk::guardedSlot([this] {
    const auto chosen = presets_.get_selected();
    if (chosen < phonePresets().size()) phone_.setPreset(phonePresets()[chosen]);
  }));
  std::vector<Glib::ustring> scales;
  scales.reserve(scaleChoices.size());
  for (const auto& [text, value] : scaleChoices) scales.emplace_back(translated(text));
  scales_.set_model(Gtk::StringList::create(scales));
  name(scales_, toTranslate("Scale of the phone"));
  scales_.property_selected().signal_changed().connect(gtk::guardedSlot([this, &place] {
    const auto chosen = scales_.get_selected();
    if (chosen < scaleChoices.size()) place.setScale(scaleChoices.at(chosen).second);
  }));
  auto* const menus = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
  presets_.set_hexpand(true);
  menus->append(presets_);
  menus->append(scales_);
  append(*menus);
  signs_.set_halign(Gtk::Align::CENTER);
  append(signs_);
  addButton("object-rotate-right-symbolic", toTranslate("Rotate the phone (Ctrl+R)"),
            [this] { rotate(); });
  statusBar_.set_active(true);
  addSwitch(statusBar_, "battery-good-symbolic", toTranslate("Status bar"),
            [this](bool isOn) { phone_.setStatusBar(isOn); });
  addDevice(locked_, "system-lock-screen-symbolic", toTranslate("Lock the phone"),
            DeviceEvent::lock, DeviceEvent::unlock);
  addDevice(background_, "go-home-symbolic", toTranslate("Send the application to the background"),
            DeviceEvent::background, DeviceEvent::foreground);
  addButton("dialog-warning-symbolic", toTranslate("Memory is low"),
            [this] { stage_.happen(DeviceEvent::memoryWarning, phone_); });
  addDevice(offline_, "network-offline-symbolic", toTranslate("Network off"), DeviceEvent::offline,
            DeviceEvent::online);
  addSwitch(hidden_, "view-conceal-symbolic", toTranslate("Hide the slot"),
            [this](bool isOn) { phone_.setSlotHidden(isOn); });
  addSwitch(covered_, "view-paged-symbolic", toTranslate("Cover the slot with another screen"),
            [this](bool isOn) { phone_.setCovered(isOn); });
  addSwitch(scrolled_, "go-down-symbolic", toTranslate("Scroll the slot away"),
            [this](bool isOn) { phone_.setScrolledAway(isOn); });
}

void DeviceBar::rotate() {
  phone_.setLandscape(!phone_.isLandscape());
  stage_.log().add("step", phone_.isLandscape() ? "rotate landscape" : "rotate portrait");
}

void DeviceBar::addSwitch(Gtk::ToggleButton& button, const char* icon, const char* text,
                          std::function<void(bool)> switched) {
  button.set_icon_name(icon);
  button.set_has_frame(false);
  name(button, text);
  button.signal_toggled().connect(
      gtk::guardedSlot([this, &button, text, switched = std::move(switched)] {
        stage_.log().add("step", std::string{text} + (button.get_active() ? ": on" : ": off"));
        switched(button.get_active());
      }));
  signs_.append(button);
}

void DeviceBar::addDevice(Gtk::ToggleButton& button, const char* icon, const char* text,
                          DeviceEvent on, DeviceEvent off) {
  button.set_icon_name(icon);
  button.set_has_frame(false);
  name(button, text);
  button.signal_toggled().connect(gtk::guardedSlot(
      [this, &button, on, off] { stage_.happen(button.get_active() ? on : off, phone_); }));
  signs_.append(button);
}

void DeviceBar::addButton(const char* icon, const char* text, std::function<void()> pressed) {
  auto* const button = Gtk::make_managed<Gtk::Button>();
  button->set_icon_name(icon);
  button->set_has_frame(false);
  name(*button, text);
  button->signal_clicked().connect(gtk::guardedSlot(std::move(pressed)));
  signs_.append(*button);
}

}  // namespace tavo::adplayer
