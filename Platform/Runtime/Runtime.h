#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <typeindex>
#include <vector>

#include "Runtime/Limits.h"
#include "Runtime/NotificationCenter.h"
#include "Runtime/Platform.h"

namespace tavo {

// Everything that exists once per process: the platform, the limits, the notification centre and
// the shared instances. A host makes one, right after it has set its toolkit up, and keeps it until
// no ad object is left; a test makes its own for its own length. Runtimes nest: the newest living
// one is the current one.
class Runtime {
 public:
  explicit Runtime(Platform platform, Limits limits = {});
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  // The newest runtime. There must be one: without it the process ends with a message that says
  // what to do. Any thread.
  [[nodiscard]] static Runtime& current();

  [[nodiscard]] Platform& platform() { return platform_; }
  [[nodiscard]] const Limits& limits() const { return limits_; }
  [[nodiscard]] NotificationCenter& notifications() { return notifications_; }

  // The one instance of `Shared` in this runtime, made by its default constructor on the first
  // call. Any thread; made once even when several threads ask at the same time. Instances are
  // destroyed with the runtime, the newest first.
  template <typename Shared>
  [[nodiscard]] Shared& shared() {
    // Every operation asks for the settings, so each thread remembers what it was given.
    thread_local Remembered<Shared> remembered;
    if (remembered.runtime != id_) remembered = {id_, &findOrMake<Shared>()};
    return *remembered.instance;
  }

 private:
  template <typename Shared>
  struct Remembered {
    std::uint64_t runtime = 0;
    Shared* instance = nullptr;
  };

  template <typename Shared>
  Shared& findOrMake() {
    const std::scoped_lock lock{mutex_};
    if (const auto found = shared_.find(typeid(Shared)); found != shared_.end()) {
      return *static_cast<Shared*>(found->second);
    }
    auto instance = std::make_shared<Shared>();
    shared_.emplace(typeid(Shared), instance.get());
    owned_.push_back(instance);
    return *instance;
  }

  const std::uint64_t id_;  // no other runtime of the process has it
  Platform platform_;
  Limits limits_;
  NotificationCenter notifications_;
  std::recursive_mutex mutex_;  // a shared instance may ask for another one while it is made
  std::map<std::type_index, void*> shared_;
  std::vector<std::shared_ptr<void>> owned_;
  Runtime* previous_ = nullptr;
};

}  // namespace tavo
