#pragma once

#include <functional>
#include <memory>

#include <tavo/Date.h>

namespace tavo {

// A timer that runs as long as somebody holds it. Main thread only.
class Timer {
 public:
  // What a platform hands out: destroying it stops the timer.
  class Handle {
   public:
    virtual ~Handle() = default;
    // False once a one-shot timer has fired.
    [[nodiscard]] virtual bool isRunning() const = 0;
  };

  Timer() = default;
  explicit Timer(std::unique_ptr<Handle> handle) : handle_{std::move(handle)} {}

  // Stops the timer; its task is not called any more, also not when it is due already.
  void invalidate() { handle_.reset(); }
  [[nodiscard]] bool isValid() const { return handle_ && handle_->isRunning(); }

 private:
  std::unique_ptr<Handle> handle_;
};

// The main thread's event loop, and a queue for work beside it.
class RunLoop {
 public:
  virtual ~RunLoop() = default;

  // Runs `task` on the main thread, after what is posted already. Any thread.
  virtual void post(std::function<void()> task) = 0;

  // Runs `task` once, `delay` from now, never inside this call. Main thread only. A negative delay
  // counts as zero.
  [[nodiscard]] virtual Timer after(Seconds delay, std::function<void()> task) = 0;

  // Runs `tick` every `period`, the first time one period from now. A tick may drop its own timer.
  // Ticks that were missed while the loop was busy are not made up for. A period below one
  // millisecond counts as one millisecond. Main thread only.
  [[nodiscard]] virtual Timer every(Seconds period, std::function<void()> tick) = 0;

  // Runs `task` on another thread. Any thread; tasks may overlap and keep no order.
  virtual void background(std::function<void()> task) = 0;

  // Time since some fixed moment; never goes backwards. Any thread.
  [[nodiscard]] virtual Seconds now() const = 0;

  // The calendar's time. Any thread.
  [[nodiscard]] virtual Date today() const = 0;

  [[nodiscard]] virtual bool isMainThread() const = 0;
};

}  // namespace tavo
