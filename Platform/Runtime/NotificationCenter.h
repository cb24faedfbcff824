#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Runtime/NotificationCenter.h"

namespace tavo {

// One posting: its name, the object that it is about (an identity, never dereferenced by the
// centre) and small facts about it.
struct Notification {
  std::string name;
  const void* object = nullptr;
  std::map<std::string, int, std::less<>> userInfo;
};

// A standing subscription; dropping it ends it, also from inside the handler.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> token) : token_{std::move(token)} {}
  void reset() { token_.reset(); }
  explicit operator bool() const { return token_ != nullptr; }

 private:
  std::shared_ptr<void> token_;
};

// Passes events between parts that do not know each other. Main thread only; handlers run at once,
// in the order in which they subscribed. A handler that is added while a posting is under way
// hears the next one.
class NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  [[nodiscard]] Subscription subscribe(std::string_view name, Handler handler);
  void post(const Notification& notification);
  // Posts a name and nothing more.
  void post(std::string_view name);

 private:
  std::map<std::string, std::vector<std::weak_ptr<const Handler>>, std::less<>> handlers_;
};

}  // namespace tavo
