#include "Gtk/Web/FocusExit.h"

#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {
namespace {

// In a world of its own, where no script of the page can answer for it.
constexpr const char* world = "tavo-focus";

bool isTab(guint key) { return key == GDK_KEY_Tab || key == GDK_KEY_ISO_Left_Tab; }

GtkDirectionType directionOf(GdkModifierType state) {
  return (state & GDK_SHIFT_MASK) != 0 ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD;
}

void leave(GtkWidget* page, GtkDirectionType direction) {
  auto* const root = gtk_widget_get_root(page);
  if (root != nullptr && gtk_widget_has_focus(page) != FALSE) {
    g_signal_emit_by_name(root, "move-focus", direction);
  }
}

}  // namespace

FocusExit::FocusExit(WebKitWebView* page) : page_{page}, keys_{gtk_event_controller_key_new()} {
  for (auto* child = gtk_widget_get_first_child(GTK_WIDGET(page)); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (GTK_IS_TEXT_VIEW(child)) gtk_widget_set_can_focus(child, FALSE);
  }
  gtk_event_controller_set_propagation_phase(keys_, GTK_PHASE_CAPTURE);
  g_signal_connect(keys_, "key-pressed", G_CALLBACK(fenced<&onPressed>), this);
  g_signal_connect(keys_, "key-released", G_CALLBACK(fenced<&onReleased>), this);
  gtk_widget_add_controller(GTK_WIDGET(page), keys_);
}

FocusExit::~FocusExit() { gtk_widget_remove_controller(GTK_WIDGET(page_), keys_); }

gboolean FocusExit::onPressed(GtkEventControllerKey* /*keys*/, guint key, guint /*code*/,
                              GdkModifierType state, FocusExit* self) {
  const bool isWayOut = key == GDK_KEY_F6 || (isTab(key) && (state & GDK_CONTROL_MASK) != 0);
  self->pressed_ = isTab(key) && !isWayOut;
  if (!isWayOut) return GDK_EVENT_PROPAGATE;
  leave(GTK_WIDGET(self->page_), directionOf(state));
  return GDK_EVENT_STOP;
}

// The page has had the key before it is asked.
void FocusExit::onReleased(GtkEventControllerKey* /*keys*/, guint key, guint /*code*/,
                           GdkModifierType state, FocusExit* self) {
  if (!isTab(key) || !std::exchange(self->pressed_, false)) return;
  webkit_web_view_evaluate_javascript(self->page_, "document.hasFocus()", -1, world, nullptr,
                                      nullptr, fenced<&onAnswer>,
                                      GINT_TO_POINTER(directionOf(state)));
}

void FocusExit::onAnswer(GObject* page, GAsyncResult* result, gpointer direction) {
  auto* const answer =
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(page), result, nullptr);
  if (answer == nullptr) return;
  if (jsc_value_to_boolean(answer) == FALSE) {
    leave(GTK_WIDGET(page), static_cast<GtkDirectionType>(GPOINTER_TO_INT(direction)));
  }
  g_object_unref(answer);
}

}  // namespace tavo::gtk
