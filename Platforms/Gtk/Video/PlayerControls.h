#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace tavo::gtk {

// The bar that a player offers to touch: pause, position, full screen. It has its place at the
// bottom of the picture, and is hidden where the player offers nothing. Main thread only.
class PlayerControls {
 public:
  struct Actions {
    std::function<void()> playOrPause{};
    std::function<void(double seconds)> seek{};
    std::function<void()> fullscreen{};
  };

  explicit PlayerControls(Actions actions);
  // The bar, should it still be somewhere, does nothing any more.
  ~PlayerControls();
  PlayerControls(const PlayerControls&) = delete;
  PlayerControls& operator=(const PlayerControls&) = delete;

  // For an overlay that owns it from then on.
  [[nodiscard]] GtkWidget* widget() const { return bar_; }

  void setVisible(bool visible) { gtk_widget_set_visible(bar_, visible ? TRUE : FALSE); }
  void showPlaying(bool playing);
  // Seconds; without a duration the position cannot be moved.
  void showPosition(double position, double duration);

 private:
  static void playClicked(GtkButton* button, gpointer self);
  static void fullscreenClicked(GtkButton* button, gpointer self);
  static gboolean positionMoved(GtkRange* range, GtkScrollType scroll, double value, gpointer self);

  Actions actions_;
  GtkWidget* bar_;
  GtkWidget* play_;
  GtkWidget* position_;
  GtkWidget* full_;
};

}  // namespace tavo::gtk
