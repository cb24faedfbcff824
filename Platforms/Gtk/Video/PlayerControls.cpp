#include "Gtk/Video/PlayerControls.h"

#include <algorithm>

namespace tavo::gtk {

namespace {

GtkWidget* makeButton(const char* icon, const char* name) {
  GtkWidget* button = gtk_button_new_from_icon_name(icon);
  gtk_button_set_has_frame(GTK_BUTTON(button), FALSE);
  gtk_accessible_update_property(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
  return button;
}

}  // namespace

PlayerControls::PlayerControls(Actions actions)
    : actions_{std::move(actions)},
      bar_{gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4)},
      play_{makeButton("media-playback-start-symbolic", "Play")},
      position_{gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 1, 1)},
      full_{makeButton("view-fullscreen-symbolic", "Full screen")} {
  gtk_widget_add_css_class(bar_, "osd");
  gtk_widget_set_valign(bar_, GTK_ALIGN_END);
  gtk_scale_set_draw_value(GTK_SCALE(position_), FALSE);
  gtk_widget_set_hexpand(position_, TRUE);
  gtk_box_append(GTK_BOX(bar_), play_);
  gtk_box_append(GTK_BOX(bar_), position_);
  gtk_box_append(GTK_BOX(bar_), full_);
  g_signal_connect(play_, "clicked", G_CALLBACK(playClicked), this);
  g_signal_connect(full_, "clicked", G_CALLBACK(fullscreenClicked), this);
  g_signal_connect(position_, "change-value", G_CALLBACK(positionMoved), this);
}

PlayerControls::~PlayerControls() {
  gtk_widget_set_visible(bar_, FALSE);
  for (GtkWidget* part : {play_, position_, full_})
    g_signal_handlers_disconnect_by_data(part, this);
}

void PlayerControls::playClicked(GtkButton* /*button*/, gpointer self) {
  static_cast<PlayerControls*>(self)->actions_.playOrPause();
}

void PlayerControls::fullscreenClicked(GtkButton* /*button*/, gpointer self) {
  static_cast<PlayerControls*>(self)->actions_.fullscreen();
}

gboolean PlayerControls::positionMoved(GtkRange* /*range*/, GtkScrollType /*scroll*/, double value,
                                       gpointer self) {
  static_cast<PlayerControls*>(self)->actions_.seek(value);
  return FALSE;
}

void PlayerControls::showPlaying(bool playing) {
  gtk_button_set_icon_name(GTK_BUTTON(play_), playing ? "media-playback-pause-symbolic"
                                                      : "media-playback-start-symbolic");
}

void PlayerControls::showPosition(double position, double duration) {
  gtk_widget_set_sensitive(position_, duration > 0 ? TRUE : FALSE);
  gtk_range_set_range(GTK_RANGE(position_), 0, std::max(duration, 1.0));
  gtk_range_set_value(GTK_RANGE(position_), position);
}

}  // namespace tavo::gtk
