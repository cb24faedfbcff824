#pragma once

#include <ctime>
#include <functional>
#include <memory>

#include <tavo/Date.h>

namespace tavo::gtk {

// Calls back once another process has used so much more of the processor: the system counts, and
// nobody has to look meanwhile.
class ProcessorAlarm {
 public:
  // `rings` is called once, on a thread of its own, unless this has gone before.
  ProcessorAlarm(int process, Seconds after, std::function<void()> rings);
  ~ProcessorAlarm();
  ProcessorAlarm(const ProcessorAlarm&) = delete;
  ProcessorAlarm& operator=(const ProcessorAlarm&) = delete;

  // False where the system cannot: then it never rings.
  [[nodiscard]] bool isSet() const { return isSet_; }

 private:
  int number_ = 0;
  timer_t timer_{};
  bool isMade_ = false;
  bool isSet_ = false;
};

}  // namespace tavo::gtk
