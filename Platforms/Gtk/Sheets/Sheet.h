#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>

#include <tavo/ViewController.h>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// Text of an ad's as a sheet shows it: valid UTF-8, without control characters (line feeds stay
// where `lines` says so), cut to `longest` characters. What the user reads is what is sent.
enum class Lines { one, many };
[[nodiscard]] Glib::ustring presentable(const std::string& text, Lines lines, std::size_t longest);

// The face of a sheet: a card with a title, fields and buttons, above a dimmed window.
class SheetForm : public Gtk::Box {
 public:
  enum class Role { cancel, suggested, destructive };

  explicit SheetForm(const Glib::ustring& title);

  // Fields stay as long as the form. The first one gets the keyboard.
  Gtk::Entry& addEntry(const Glib::ustring& label, const Glib::ustring& text);
  Gtk::TextView& addText(const Glib::ustring& label, const Glib::ustring& text);
  void addNote(const Glib::ustring& text);
  void addButton(const Glib::ustring& label, Role role, std::function<void()> pressed);
  [[nodiscard]] const Glib::ustring& title() const { return title_; }
  // Hears of every button after what the button does.
  void setFinished(std::function<void()> finished) { finished_ = std::move(finished); }

 private:
  void addRow(const Glib::ustring& label, Gtk::Widget& field, Gtk::Widget& focused);

  const Glib::ustring title_;
  Gtk::Box card_{Gtk::Orientation::VERTICAL};
  Gtk::CenterBox header_;
  Gtk::Grid fields_;
  Gtk::Box actions_{Gtk::Orientation::HORIZONTAL};
  int rows_ = 0;
  std::function<void()> finished_;
};

// Takes a sheet off the screen when whoever has presented it did not: the ad behind it may be gone.
void closeSheet(ViewController& sheet);

// A sheet in the scene: presented like any controller, drawn by the toolkit. It leaves the screen
// with whatever the user does first. Main thread only.
class Sheet : public ViewController {
 public:
  // `cancel` is what the Escape key does.
  Sheet(SheetForm& form, std::function<void()> cancel);

  [[nodiscard]] SheetForm& form() const { return form_; }
  bool cancelOperation() override;

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override;

 private:
  GPtr<GtkWidget> widget_;
  SheetForm& form_;
  std::function<void()> cancel_;
};

}  // namespace tavo::gtk
