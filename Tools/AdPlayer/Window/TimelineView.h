#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "AdPlayer/Events/EventLog.h"

namespace tavo::adplayer {

// The events of a log as they come: filtered by kind and text, with the fields of the one that is
// selected below; what is shown can be copied and exported.
class TimelineView : public Gtk::Box {
 public:
  explicit TimelineView(EventLog& log);

  // Empties the list; the log has begun anew.
  void clear();
  void focusSearch() { search_.grab_focus(); }

 private:
  class Row;
  void makeTools();
  void makeList();
  void makeKindFilter();
  void add(const PlayEvent& event);
  void noteKind(const std::string& kind);
  void filter();
  void showCount();
  void showSelected();
  void copy();
  void exportLines();
  [[nodiscard]] bool isShown(const PlayEvent& event) const;
  [[nodiscard]] std::string shownLines(bool asJson) const;

  Gtk::Box tools_{Gtk::Orientation::HORIZONTAL, 6};
  Gtk::SearchEntry search_;
  Gtk::MenuButton kindButton_;
  Gtk::Popover kindPopover_;
  Gtk::Box kindBox_{Gtk::Orientation::VERTICAL, 2};
  Gtk::Button copy_;
  Gtk::Button export_;
  Gtk::ToggleButton follow_;
  Gtk::Paned panes_{Gtk::Orientation::VERTICAL};
  Gtk::ScrolledWindow listScroller_;
  Gtk::ListView list_;
  Gtk::ScrolledWindow detailScroller_;
  Gtk::TextView detail_;
  Gtk::Label count_;
  Glib::RefPtr<Gio::ListStore<Row>> rows_;
  Glib::RefPtr<Gio::ListStore<Row>> shown_;
  Glib::RefPtr<Gtk::SingleSelection> selection_;
  std::set<std::string> kinds_;
  std::set<std::string> hidden_;
  Glib::RefPtr<Gtk::FileChooserNative> chooser_;
  std::shared_ptr<void> listener_;
};

}  // namespace tavo::adplayer
