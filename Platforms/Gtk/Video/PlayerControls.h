#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

namespace tavo::gtk {

// The bar that a player offers to touch: pause, position, full screen. It has its place at the
// bottom of the picture, and is hidden where the player offers nothing. Main thread only.
class PlayerControls {
 public:
  struct Actions {
    std::function<void()> playOrPause{};
    std::function<void(double seconds)> seek{};  // once a gesture, when it ends
    std::function<void()> fullscreen{};
  };

  explicit PlayerControls(Actions actions);
  // The bar, should it still be somewhere, does nothing any more.
  ~PlayerControls();
  PlayerControls(const PlayerControls&) = delete;
  PlayerControls& operator=(const PlayerControls&) = delete;

  // For an overlay that owns it from then on.
  [[nodiscard]] GtkWidget* widget() const { return bar_; }

  void setVisible(bool visible);
  void showPlaying(bool playing);
  void showFullscreen(bool fullscreen);
  // Seconds; without a duration the position cannot be moved.
  void showPosition(double position, double duration);

 private:
  static void playClicked(GtkButton* button, gpointer self);
  static void fullscreenClicked(GtkButton* button, gpointer self);
  static gboolean heldOrLetGo(GtkEventController* controller, GdkEvent* event, gpointer self);
  static gboolean positionMoved(GtkRange* range, GtkScrollType scroll, double value, gpointer self);

  void letGo();

  Actions actions_;
  bool held_ = false;                // a finger or a button is on the position,
  std::optional<double> draggedTo_;  // and has moved it
  GtkWidget* bar_;
  GtkWidget* play_;
  GtkWidget* position_;
  GtkEventController* watch_ = nullptr;  // owned by the position
  GtkWidget* full_;
};

}  // namespace tavo::gtk
