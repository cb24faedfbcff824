#pragma once

#include <functional>
#include <memory>

#include "Gtk/GPtr.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// A timer on the default main context, exact to the microsecond that the kernel allows. Main thread
// only.
class GtkTimer : public Timer::Handle {
 public:
  enum class Kind { once, repeating };

  // Calls `task` one `interval` from now and, when repeating, every `interval` after that.
  GtkTimer(Kind kind, Seconds interval, std::function<void()> task);
  ~GtkTimer() override;
  GtkTimer(const GtkTimer&) = delete;
  GtkTimer& operator=(const GtkTimer&) = delete;

  [[nodiscard]] bool isRunning() const override;

 private:
  GSourcePtr source_;
};

}  // namespace tavo::gtk
