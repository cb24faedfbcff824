#pragma once

#include "Support/PrivateBus.h"

namespace tavo::test {

// Stands in for the system's login manager on a private bus: it knows one session, this program's.
class FakeLogind {
 public:
  static constexpr const char* sessionPath = "/org/freedesktop/login1/session/own";

  explicit FakeLogind(const PrivateBus& bus);
  ~FakeLogind();
  FakeLogind(const FakeLogind&) = delete;
  FakeLogind& operator=(const FakeLogind&) = delete;

 private:
  GDBusConnection* connection_;
  guint object_ = 0;
};

}  // namespace tavo::test
