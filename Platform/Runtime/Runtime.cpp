#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

#include <tavo/Runtime.h>

#include "Runtime/Environment.h"

namespace tavo {

namespace {

// The living runtimes, oldest first.
struct Runtimes {
  std::mutex mutex;
  std::vector<Runtime*> living;
};

Runtimes& runtimes() {
  static Runtimes only;
  return only;
}

Platform whole(Platform platform) {
  if (const char* name = missingService(platform)) {
    std::fprintf(stderr, "TAVO: the platform has no service \"%s\". Fill it before the runtime.\n",
                 name);
    std::abort();
  }
  return platform;
}

}  // namespace

Runtime::Runtime(Platform platform)
    : environment_{std::make_shared<Environment>(whole(std::move(platform)))} {
  auto& [mutex, living] = runtimes();
  const std::scoped_lock lock{mutex};
  living.push_back(this);
}

Runtime::~Runtime() {
  auto& [mutex, living] = runtimes();
  const std::scoped_lock lock{mutex};
  std::erase(living, this);
}

Runtime& Runtime::current() {
  auto& [mutex, living] = runtimes();
  const std::scoped_lock lock{mutex};
  if (living.empty()) {
    std::fputs("TAVO: no tavo::Runtime exists. Make one before the first ad object.\n", stderr);
    std::abort();
  }
  return *living.back();
}

std::shared_ptr<Environment> Runtime::currentEnvironment() {
  auto& [mutex, living] = runtimes();
  const std::scoped_lock lock{mutex};
  return living.empty() ? nullptr : living.back()->environment_;
}

const Platform& Runtime::platform() const { return environment_->platform(); }

const Limits& Runtime::limits() const { return environment_->limits(); }

NotificationCenter& Runtime::notifications() const { return environment_->notifications(); }

}  // namespace tavo
