#pragma once

#include <glibmm/extraclassinit.h>
#include <gtkmm.h>

#include <memory>
#include <string>
#include <vector>

#include <tavo/View.h>

#include "Gtk/Scene/NativePlace.h"

namespace tavo::gtk {

// Shows one view of the scene: paints its background and content, and holds a widget for each of
// its subviews, placed by their frames. The tree is the scene's; this is its picture. Main thread
// only.
//
// A page that moves has all that it stands in drawn again with each of its frames. So the toolkit
// calls `draw` itself: its C++ interface makes an object for each call.
class ViewWidget : public Glib::ExtraClassInit, public Gtk::Widget {
 public:
  // Nothing below is made larger than `longestSide` points a side: a widget of tens of thousands
  // ends the process.
  ViewWidget(const std::shared_ptr<View>& view, double longestSide);
  ~ViewWidget() override;

  [[nodiscard]] std::shared_ptr<View> view() const { return view_.lock(); }

  // The point of the view that stands in the widget's corner: its own, but for a part of a view.
  void setOrigin(Point origin);
  [[nodiscard]] Point origin() const { return origin_; }

  // Makes the widgets below match the scene: new views get widgets, gone ones lose theirs, the rest
  // follows its view. Widgets with a native one that is kept stay, hidden, until a view that brings
  // it comes here again.
  void sync();

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int for_size, int& minimum, int& natural,
                     int& minimum_baseline, int& natural_baseline) const override;
  void size_allocate_vfunc(int width, int height, int baseline) override;
  bool contains_vfunc(double x, double y) const override;

 private:
  struct Child {
    std::weak_ptr<View> view;
    std::unique_ptr<Gtk::Widget> widget;
  };

  static void initialize(gpointer widgetClass, gpointer data);
  static void draw(GtkWidget* widget, GtkSnapshot* snapshot);
  void drawOn(GtkSnapshot* snapshot);
  [[nodiscard]] std::unique_ptr<Gtk::Widget> makeWidget(const std::shared_ptr<View>& view) const;
  [[nodiscard]] int bearable(double length) const;
  void show(const std::shared_ptr<View>& view);
  bool retire();
  void nameIt(const std::string& name);
  void letKeysReach(bool reached);
  void syncProperties(const View& view);
  void syncChildren(const View& view);
  void discard(std::vector<Child> children);
  void allocateChild(const View& view, Gtk::Widget& child);

  std::weak_ptr<View> view_;
  std::string name_;  // as assistive technology has it
  const double longestSide_;
  Point origin_;
  bool isPainted_ = false;       // by itself; else there is only what it holds
  std::vector<Child> children_;  // back to front
  std::vector<Child> spares_;    // of views that are gone
  Glib::RefPtr<Gtk::EventControllerKey> keys_;
  NativePlace native_{GTK_WIDGET(gobj())};
};

}  // namespace tavo::gtk
