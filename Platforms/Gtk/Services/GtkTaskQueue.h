#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// Tasks that run on the default main context one after the other, in the order in which they came.
// One event source serves them all and is woken by its time stamp, which costs a fraction of a
// source for every task.
class GtkTaskQueue {
 public:
  using Task = std::function<void()>;

  [[nodiscard]] static std::shared_ptr<GtkTaskQueue> create();
  ~GtkTaskQueue();
  GtkTaskQueue(const GtkTaskQueue&) = delete;
  GtkTaskQueue& operator=(const GtkTaskQueue&) = delete;

  // Any thread.
  void add(Task task);

  // Drops the tasks that have not begun. Any thread.
  void clear();

 private:
  GtkTaskQueue();

  static gboolean wokenUp(gpointer weakQueue);
  void runWaiting();
  [[nodiscard]] Task takeNext();

  GSourcePtr source_;
  std::mutex mutex_;
  std::deque<Task> waiting_;  // the source is ready exactly while this is not empty
};

}  // namespace tavo::gtk
