#pragma once

#include <gtkmm.h>

#include <functional>
#include <string>
#include <vector>

namespace tavo::test {

// The widgets below `top` that are of a kind and satisfy `wanted`, in the order of the tree.
template <typename Widget>
std::vector<Widget*> widgetsBelow(
    Gtk::Widget& top, const std::function<bool(Widget&)>& wanted = [](Widget&) { return true; }) {
  std::vector<Widget*> found;
  for (auto* child = top.get_first_child(); child != nullptr; child = child->get_next_sibling()) {
    auto* widget = dynamic_cast<Widget*>(child);
    if (widget != nullptr && wanted(*widget)) found.push_back(widget);
    for (auto* deeper : widgetsBelow<Widget>(*child, wanted)) found.push_back(deeper);
  }
  return found;
}

// Presses the button with this label below `top`; false when there is none.
inline bool pressButton(Gtk::Widget& top, const std::string& label) {
  const auto buttons = widgetsBelow<Gtk::Button>(
      top, [&](Gtk::Button& button) { return button.get_label().raw() == label; });
  if (buttons.size() != 1) return false;
  g_signal_emit_by_name(buttons.front()->gobj(), "clicked");
  return true;
}

// The button under a point of the window, where a person would hit it; null when there is none.
inline GtkWidget* buttonAt(Gtk::Window& window, double x, double y) {
  GtkWidget* widget = gtk_widget_pick(GTK_WIDGET(window.gobj()), x, y, GTK_PICK_DEFAULT);
  while (widget != nullptr && GTK_IS_BUTTON(widget) == FALSE) {
    widget = gtk_widget_get_parent(widget);
  }
  return widget;
}

// The words that it offers to readers and to the pointer.
inline std::string buttonNameAt(Gtk::Window& window, double x, double y) {
  GtkWidget* button = buttonAt(window, x, y);
  if (button == nullptr) return "no button";
  const char* text = gtk_widget_get_tooltip_text(button);
  return text == nullptr ? "unnamed" : text;
}

// Presses it, as a click would; false when there is none.
inline bool pressButtonAt(Gtk::Window& window, double x, double y) {
  GtkWidget* button = buttonAt(window, x, y);
  if (button != nullptr) g_signal_emit_by_name(button, "clicked");
  return button != nullptr;
}

// Gives a key to the window as if nothing with the keyboard had wanted it; true when it was used.
inline bool pressKey(Gtk::Window& window, guint key) {
  GListModel* controllers = gtk_widget_observe_controllers(GTK_WIDGET(window.gobj()));
  bool used = false;
  for (guint at = 0; at < g_list_model_get_n_items(controllers); ++at) {
    gpointer controller = g_list_model_get_item(controllers, at);
    gboolean handled = FALSE;
    if (GTK_IS_EVENT_CONTROLLER_KEY(controller)) {
      g_signal_emit_by_name(controller, "key-pressed", key, 0U, 0, &handled);
    }
    used = used || handled != FALSE;
    g_object_unref(controller);
  }
  g_object_unref(controllers);
  return used;
}

}  // namespace tavo::test
