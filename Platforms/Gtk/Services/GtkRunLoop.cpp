#include "Gtk/Services/GtkRunLoop.h"

#include <algorithm>

#include "Gtk/Guarded.h"
#include "Gtk/Services/GtkTaskQueue.h"
#include "Gtk/Services/GtkTimer.h"

namespace tavo::gtk {

namespace {

// Enough for a picture or two, a slow look-up and the tracking completions beside them.
constexpr int workerThreads = 4;

// GLib hands each task over exactly once: to a worker, or to the one that drops it.
using Task = std::function<void()>;
void runTask(gpointer task, gpointer /*data*/) {
  const std::unique_ptr<Task> owned{static_cast<Task*>(task)};
  guarded(*owned);
}
void dropTask(gpointer task) { delete static_cast<Task*>(task); }

}  // namespace

GtkRunLoop::GtkRunLoop()
    : posted_{GtkTaskQueue::create()},
      workers_{
          g_thread_pool_new_full(&runTask, nullptr, &dropTask, workerThreads, FALSE, nullptr)} {}

GtkRunLoop::~GtkRunLoop() {
  // A worker that holds the last reference cannot wait for itself.
  const gboolean awaitRunning = isMainThread() ? TRUE : FALSE;
  g_thread_pool_free(workers_, TRUE, awaitRunning);
  posted_->clear();
}

void GtkRunLoop::post(Task task) { posted_->add(std::move(task)); }

Timer GtkRunLoop::after(Seconds delay, Task task) {
  return Timer{std::make_unique<GtkTimer>(GtkTimer::Kind::once, delay, std::move(task))};
}

Timer GtkRunLoop::every(Seconds period, Task tick) {
  constexpr Seconds shortest{0.001};
  return Timer{std::make_unique<GtkTimer>(GtkTimer::Kind::repeating, std::max(period, shortest),
                                          std::move(tick))};
}

void GtkRunLoop::background(Task task) {
  g_thread_pool_push(workers_, new Task{std::move(task)}, nullptr);
}

Seconds GtkRunLoop::now() const {
  return Seconds{static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC};
}

Date GtkRunLoop::today() const { return std::chrono::system_clock::now(); }

bool GtkRunLoop::isMainThread() const { return std::this_thread::get_id() == mainThread_; }

}  // namespace tavo::gtk
