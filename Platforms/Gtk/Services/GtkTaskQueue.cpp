#include "Gtk/Services/GtkTaskQueue.h"

#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Services/ReadyTimeSource.h"

namespace tavo::gtk {

namespace {
using WeakQueue = std::weak_ptr<GtkTaskQueue>;

constexpr gint64 readyNow = 0;
constexpr gint64 neverReady = -1;
}  // namespace

std::shared_ptr<GtkTaskQueue> GtkTaskQueue::create() {
  std::shared_ptr<GtkTaskQueue> queue{new GtkTaskQueue};
  GSource* const source = queue->source_.get();
  g_source_set_callback(source, &GtkTaskQueue::wokenUp, new WeakQueue{queue},
                        [](gpointer weak) { delete static_cast<WeakQueue*>(weak); });
  // A task may run the loop again, and the tasks behind it must still have their turn in there.
  g_source_set_can_recurse(source, TRUE);
  g_source_attach(source, nullptr);
  return queue;
}

GtkTaskQueue::GtkTaskQueue() : source_{newReadyTimeSource()} {}

GtkTaskQueue::~GtkTaskQueue() { g_source_destroy(source_.get()); }

void GtkTaskQueue::add(Task task) {
  const std::scoped_lock lock{mutex_};
  waiting_.push_back(std::move(task));
  if (waiting_.size() == 1) g_source_set_ready_time(source_.get(), readyNow);
}

void GtkTaskQueue::clear() {
  std::deque<Task> dropped;  // outlives the lock: what a task holds may post when it goes
  const std::scoped_lock lock{mutex_};
  dropped.swap(waiting_);
  g_source_set_ready_time(source_.get(), neverReady);
}

gboolean GtkTaskQueue::wokenUp(gpointer weakQueue) {
  const auto queue = static_cast<WeakQueue*>(weakQueue)->lock();
  if (queue) guarded([&] { queue->runWaiting(); });
  return G_SOURCE_CONTINUE;
}

// Runs no more than what waits now: tasks that post themselves again take turns with the rest of
// the loop.
void GtkTaskQueue::runWaiting() {
  std::size_t count = 0;
  {
    const std::scoped_lock lock{mutex_};
    count = waiting_.size();
  }
  for (; count > 0; --count) {
    const Task task = takeNext();
    if (!task) return;
    guarded(task);
  }
}

GtkTaskQueue::Task GtkTaskQueue::takeNext() {
  const std::scoped_lock lock{mutex_};
  if (waiting_.empty()) return {};
  Task task = std::move(waiting_.front());
  waiting_.pop_front();
  if (waiting_.empty()) g_source_set_ready_time(source_.get(), neverReady);
  return task;
}

}  // namespace tavo::gtk
