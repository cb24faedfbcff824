#pragma once

#include <gio/gio.h>

namespace tavo::test {

// A message bus of the test's own, which stands for the session's and the system's.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  // A service's end of the bus.
  [[nodiscard]] GDBusConnection* connection() const { return sender_; }
  // Takes a well-known name for that end.
  void own(const char* name) const;
  void emit(const char* interface, const char* signal, GVariant* parameters,
            const char* path = "/somewhere") const;
  // What was emitted so far has come to this program's own ends of the bus, in its main context.
  void waitForSignals() const;

 private:
  GTestDBus* daemon_;
  GDBusConnection* sender_ = nullptr;
};

}  // namespace tavo::test
