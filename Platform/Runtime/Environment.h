#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <type_traits>
#include <typeindex>
#include <vector>

#include <tavo/Platform.h>

#include "Runtime/NotificationCenter.h"

namespace tavo {

// What the objects of one runtime work in: the platform's services, the limits, the notification
// centre and the shared instances. Objects that make others share it and hand it on; it lives as
// long as the last of them. A leaf is given the services that it uses and nothing else.
class Environment {
 public:
  // The platform must be whole: every service is there, and nobody asks again.
  explicit Environment(Platform platform);
  ~Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  [[nodiscard]] const Platform& platform() const { return platform_; }
  [[nodiscard]] const Limits& limits() const { return platform_.limits; }
  [[nodiscard]] NotificationCenter& notifications() const { return *platform_.notifications; }

  // The one instance of `Shared` in this environment, made on the first call: from the environment
  // where it has a constructor for it, else by its default constructor. It must not share the
  // environment, which owns it. Any thread; made once even when several threads ask at the same
  // time. Instances are destroyed with the environment, the newest first.
  template <typename Shared>
  [[nodiscard]] Shared& shared() {
    // Every operation asks for the settings, so each thread remembers what it was given.
    thread_local Remembered<Shared> remembered;
    if (remembered.environment != id_) remembered = {id_, &findOrMake<Shared>()};
    return *remembered.instance;
  }

 private:
  template <typename Shared>
  struct Remembered {
    std::uint64_t environment = 0;
    Shared* instance = nullptr;
  };

  template <typename Shared>
  Shared& findOrMake() {
    const std::scoped_lock lock{mutex_};
    if (const auto found = shared_.find(typeid(Shared)); found != shared_.end()) {
      return *static_cast<Shared*>(found->second);
    }
    auto instance = make<Shared>();
    shared_.emplace(typeid(Shared), instance.get());
    owned_.push_back(instance);
    return *instance;
  }

  template <typename Shared>
  std::shared_ptr<Shared> make() {
    if constexpr (std::is_constructible_v<Shared, Environment&>) {
      return std::make_shared<Shared>(*this);
    } else {
      return std::make_shared<Shared>();
    }
  }

  const std::uint64_t id_;  // no other environment of the process has it
  const Platform platform_;
  std::recursive_mutex mutex_;  // a shared instance may ask for another one while it is made
  std::map<std::type_index, void*> shared_;
  std::vector<std::shared_ptr<void>> owned_;
};

// The name of the first service that `platform` lacks; null when it is whole.
[[nodiscard]] const char* missingService(const Platform& platform);

}  // namespace tavo
