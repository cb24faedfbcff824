#include "Gtk/Video/PlayerControls.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Gtk/Guarded.h"
#include "Values/Translation.h"

namespace tavo::gtk {

namespace {

void nameForAssistants(GtkWidget* widget, const std::string& name) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 name.c_str(), -1);
}

// What a button does now: in a picture, and in words for those who do not see it and for those who
// wonder what it means.
void dress(GtkWidget* button, const char* icon, const std::string& name) {
  gtk_button_set_icon_name(GTK_BUTTON(button), icon);
  gtk_widget_set_tooltip_text(button, name.c_str());
  nameForAssistants(button, name);
}

GtkWidget* makeButton() {
  GtkWidget* button = gtk_button_new();
  gtk_button_set_has_frame(GTK_BUTTON(button), FALSE);
  return button;
}

}  // namespace

PlayerControls::PlayerControls(Actions actions)
    : actions_{std::move(actions)},
      bar_{gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4)},
      play_{makeButton()},
      position_{gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 1, 1)},
      full_{makeButton()} {
  showPlaying(false);
  showFullscreen(false);
  nameForAssistants(position_, translated("Position"));
  gtk_widget_add_css_class(bar_, "osd");
  gtk_widget_set_valign(bar_, GTK_ALIGN_END);
  gtk_scale_set_draw_value(GTK_SCALE(position_), FALSE);
  gtk_widget_set_hexpand(position_, TRUE);
  gtk_box_append(GTK_BOX(bar_), play_);
  gtk_box_append(GTK_BOX(bar_), position_);
  gtk_box_append(GTK_BOX(bar_), full_);
  g_signal_connect(play_, "clicked", G_CALLBACK(fenced<&PlayerControls::playClicked>), this);
  g_signal_connect(full_, "clicked", G_CALLBACK(fenced<&PlayerControls::fullscreenClicked>), this);
  g_signal_connect(position_, "change-value", G_CALLBACK(fenced<&PlayerControls::positionMoved>),
                   this);
  GtkEventController* watch = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(watch, GTK_PHASE_CAPTURE);
  g_signal_connect(watch, "event", G_CALLBACK(fenced<&PlayerControls::heldOrLetGo>), this);
  gtk_widget_add_controller(position_, watch);
  watch_ = watch;
}

PlayerControls::~PlayerControls() {
  gtk_widget_set_visible(bar_, FALSE);
  for (GtkWidget* part : {play_, position_, full_})
    g_signal_handlers_disconnect_by_data(part, this);
  g_signal_handlers_disconnect_by_data(watch_, this);
}

void PlayerControls::playClicked(GtkButton* /*button*/, gpointer self) {
  static_cast<PlayerControls*>(self)->actions_.playOrPause();
}

void PlayerControls::fullscreenClicked(GtkButton* /*button*/, gpointer self) {
  static_cast<PlayerControls*>(self)->actions_.fullscreen();
}

// The position's own gestures tell of every motion and of no end, so the events are looked at on
// their way to them.
gboolean PlayerControls::heldOrLetGo(GtkEventController* /*controller*/, GdkEvent* event,
                                     gpointer self) {
  auto& controls = *static_cast<PlayerControls*>(self);
  switch (gdk_event_get_event_type(event)) {
    case GDK_BUTTON_PRESS:
    case GDK_TOUCH_BEGIN:
      controls.held_ = true;
      break;
    case GDK_BUTTON_RELEASE:
    case GDK_TOUCH_END:
    case GDK_TOUCH_CANCEL:
    case GDK_GRAB_BROKEN:
      controls.letGo();
      break;
    default:
      break;
  }
  return GDK_EVENT_PROPAGATE;
}

void PlayerControls::letGo() {
  held_ = false;
  const auto target = std::exchange(draggedTo_, std::nullopt);
  if (target) actions_.seek(*target);
}

gboolean PlayerControls::positionMoved(GtkRange* /*range*/, GtkScrollType /*scroll*/, double value,
                                       gpointer self) {
  auto& controls = *static_cast<PlayerControls*>(self);
  controls.draggedTo_ = value;
  if (!controls.held_) controls.letGo();  // by key or wheel: each step is a gesture
  return FALSE;
}

// A gesture on a bar that vanishes has no end of its own.
void PlayerControls::setVisible(bool visible) {
  if (!visible) held_ = false;
  if (!visible) draggedTo_.reset();
  gtk_widget_set_visible(bar_, visible ? TRUE : FALSE);
}

void PlayerControls::showPlaying(bool playing) {
  if (playing) {
    dress(play_, "media-playback-pause-symbolic", translated("Pause"));
  } else {
    dress(play_, "media-playback-start-symbolic", translated("Play"));
  }
}

void PlayerControls::showFullscreen(bool fullscreen) {
  if (fullscreen) {
    dress(full_, "view-restore-symbolic", translated("Leave full screen"));
  } else {
    dress(full_, "view-fullscreen-symbolic", translated("Full screen"));
  }
}

void PlayerControls::showPosition(double position, double duration) {
  gtk_widget_set_sensitive(position_, duration > 0 ? TRUE : FALSE);
  if (draggedTo_) return;  // the person's hand is on it
  gtk_range_set_range(GTK_RANGE(position_), 0, std::max(duration, 1.0));
  gtk_range_set_value(GTK_RANGE(position_), position);
}

}  // namespace tavo::gtk
