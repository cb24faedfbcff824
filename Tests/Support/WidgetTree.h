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
