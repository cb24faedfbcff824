#pragma once

#include <string_view>

namespace tavo {

// The platform's log: messages that are always written.
class Log {
 public:
  virtual ~Log() = default;

  // Writes one message. Any thread.
  virtual void write(std::string_view message) = 0;
};

}  // namespace tavo
