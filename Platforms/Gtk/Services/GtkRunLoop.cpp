#include "Gtk/Services/GtkRunLoop.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

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

struct Loops {
  std::mutex mutex;
  std::vector<GtkRunLoop*> all;
};

// Never destroyed: the end of the process asks for it.
Loops& livingLoops() {
  static auto* const living = new Loops;
  return *living;
}

}  // namespace

GtkRunLoop::GtkRunLoop()
    : posted_{GtkTaskQueue::create()},
      workers_{
          g_thread_pool_new_full(&runTask, nullptr, &dropTask, workerThreads, FALSE, nullptr)} {
  [[maybe_unused]] static const int registered = std::atexit(&GtkRunLoop::endAllWorkers);
  auto& [mutex, all] = livingLoops();
  const std::scoped_lock lock{mutex};
  all.push_back(this);
}

GtkRunLoop::~GtkRunLoop() {
  {
    auto& [mutex, all] = livingLoops();
    const std::scoped_lock lock{mutex};
    std::erase(all, this);
  }
  // A worker that holds the last reference cannot wait for itself.
  endWorkers(isMainThread());
  posted_->clear();
}

void GtkRunLoop::endWorkers(bool awaitRunning) {
  GThreadPool* workers = nullptr;
  {
    const std::scoped_lock lock{workersMutex_};
    workers = std::exchange(workers_, nullptr);
  }
  if (workers != nullptr) g_thread_pool_free(workers, TRUE, awaitRunning ? TRUE : FALSE);
}

void GtkRunLoop::endAllWorkers() {
  auto& [mutex, all] = livingLoops();
  const std::scoped_lock lock{mutex};
  for (GtkRunLoop* const loop : all) loop->endWorkers(true);
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
  const std::scoped_lock lock{workersMutex_};
  if (workers_ != nullptr) g_thread_pool_push(workers_, new Task{std::move(task)}, nullptr);
}

Seconds GtkRunLoop::now() const {
  return Seconds{static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC};
}

Date GtkRunLoop::today() const { return std::chrono::system_clock::now(); }

bool GtkRunLoop::isMainThread() const { return std::this_thread::get_id() == mainThread_; }

}  // namespace tavo::gtk
