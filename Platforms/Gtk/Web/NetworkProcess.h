#pragma once

#include <glib.h>

#include <functional>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// The number of the engine's network process; 0 while there is none.
[[nodiscard]] int idOfNetworkProcess();

// The engine's network process, which all sessions of this program share. The engine starts another
// one when it has ended, and says nothing of it. Main thread only.
class NetworkProcess {
 public:
  // `ended` is called in a turn of the loop, once for each process that is watched.
  explicit NetworkProcess(std::function<void()> ended) : ended_{std::move(ended)} {}
  ~NetworkProcess() { forget(); }
  NetworkProcess(const NetworkProcess&) = delete;
  NetworkProcess& operator=(const NetworkProcess&) = delete;

  // Watches the one that runs now; false when there is none, or the system cannot watch it.
  bool watch();
  // The one that is watched has ended, whether that was told already or not.
  [[nodiscard]] bool hasEnded() const;

 private:
  static gboolean onReadable(gint file, GIOCondition condition, gpointer self);
  void forget();

  std::function<void()> ended_;
  int file_ = -1;  // stands for the process; readable when it has ended
  GSourcePtr source_;
};

}  // namespace tavo::gtk
