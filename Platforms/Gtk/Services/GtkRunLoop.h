#pragma once

#include <glib.h>

#include <memory>
#include <mutex>
#include <thread>

#include "Services/RunLoop.h"

namespace tavo::gtk {

class GtkTaskQueue;

// The run loop of an application on GLib's default main context, which is the one that GTK runs.
// The thread that makes it is the main thread.
//
// Posted tasks and timers have the priority of input events: before painting, and fair to both as
// long as a task does not post itself again without end. A run of posted tasks takes only what was
// posted when it began.
//
// A task that ends in an exception is written down; the host and the other tasks go on.
//
// Its last owner should be the main thread. It drops tasks that have not begun when it goes: posted
// ones, and background ones, of which it awaits those that run. A process that ends before its loop
// does the same for the background ones: a thread that maps a library while libraries go ends the
// process in a crash.
class GtkRunLoop : public RunLoop {
 public:
  GtkRunLoop();
  ~GtkRunLoop() override;
  GtkRunLoop(const GtkRunLoop&) = delete;
  GtkRunLoop& operator=(const GtkRunLoop&) = delete;

  void post(std::function<void()> task) override;
  [[nodiscard]] Timer after(Seconds delay, std::function<void()> task) override;
  [[nodiscard]] Timer every(Seconds period, std::function<void()> tick) override;
  void background(std::function<void()> task) override;
  [[nodiscard]] Seconds now() const override;
  [[nodiscard]] Date today() const override;
  [[nodiscard]] bool isMainThread() const override;

 private:
  void endWorkers(bool awaitRunning);
  static void endAllWorkers();

  const std::thread::id mainThread_ = std::this_thread::get_id();
  std::shared_ptr<GtkTaskQueue> posted_;
  std::mutex workersMutex_;
  GThreadPool* workers_;  // null once the process ends
};

}  // namespace tavo::gtk
