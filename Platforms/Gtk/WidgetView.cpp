#include <tavo/gtk/WidgetView.h>

#include "Gtk/GPtr.h"
#include "Gtk/Scene/NativeView.h"

namespace tavo::gtk {

namespace {

// A widget of somebody else's in the scene.
class WidgetView : public View, public NativeView {
 public:
  WidgetView(GtkWidget* widget, const Rect& frame)
      : View{frame}, widget_{GPtr<GtkWidget>::sink(widget)} {}
  ~WidgetView() override {
    if (gtk_widget_get_parent(widget_.get()) != nullptr) gtk_widget_unparent(widget_.get());
  }
  WidgetView(const WidgetView&) = delete;
  WidgetView& operator=(const WidgetView&) = delete;

  // NativeView
  [[nodiscard]] GtkWidget* widget() override { return widget_.get(); }
  [[nodiscard]] bool isReadyToShow() const override { return true; }

 private:
  const GPtr<GtkWidget> widget_;
};

}  // namespace

std::shared_ptr<View> makeWidgetView(GtkWidget* widget, const Rect& frame) {
  return std::make_shared<WidgetView>(widget, frame);
}

}  // namespace tavo::gtk
