#pragma once

#include <string_view>

namespace tavo {

// What a message means to whoever reads it.
enum class LogLevel {
  debug,    // a step on the way
  info,     // something that happened, as it should
  shown,    // any of these while the debug switch is on: the reader has asked for all
  warning,  // an ad did not come about, or something that the host can mend
  error,    // a mistake in the host or in its installation: nothing will come of it
};

// The platform's log. What is below a warning is not for everybody's eyes: a platform writes it
// where only those look who want to see it.
class Log {
 public:
  virtual ~Log() = default;

  // Writes one message. Any thread.
  virtual void write(LogLevel level, std::string_view message) = 0;
};

}  // namespace tavo
