#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

#include <tavo/Runtime.h>

#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Runtime/MainThread.h"
#include "Services/Log.h"

namespace tavo {

namespace {

// The living runtimes, oldest first.
struct Runtimes {
  std::mutex mutex;
  std::vector<Runtime*> living;
  std::weak_ptr<Environment> last;  // of the one that ended last
};

Runtimes& runtimes() {
  static Runtimes only;
  return only;
}

[[noreturn]] void missRuntime() {
  std::fputs("TAVO: no tavo::Runtime exists. Make one before the first ad object.\n", stderr);
  std::abort();
}

Platform whole(Platform platform) {
  if (const char* name = missingService(platform)) {
    std::fprintf(stderr, "TAVO: the platform has no service \"%s\". Fill it before the runtime.\n",
                 name);
    std::abort();
  }
  return platform;
}

// A program that is started again while it runs makes its runtime anew: it gets what it has, with
// the settings that it has made.
std::shared_ptr<Environment> environmentFor(Platform platform) {
  auto& [mutex, living, last] = runtimes();
  {
    const std::scoped_lock lock{mutex};
    if (living.empty()) becomeMainThread();
    const auto same = std::find_if(living.begin(), living.end(), [&](const Runtime* runtime) {
      return runtime->platform() == platform;
    });
    if (same != living.end()) {
      (*same)->platform().log->write(
          LogLevel::warning,
          "A tavo::Runtime was made for a platform that has one: both are one. Make it once, where "
          "the application starts up, and not each time that it is activated.");
      return (*same)->environment();
    }
  }
  return std::make_shared<Environment>(whole(std::move(platform)));
}

}  // namespace

Runtime::Runtime(Platform platform) : environment_{environmentFor(std::move(platform))} {
  requireMainThread("Runtime::Runtime");
  auto& [mutex, living, last] = runtimes();
  const std::scoped_lock lock{mutex};
  living.push_back(this);
}

Runtime::~Runtime() {
  requireMainThread("Runtime::~Runtime");
  auto& [mutex, living, last] = runtimes();
  const std::scoped_lock lock{mutex};
  std::erase(living, this);
  last = environment_;
}

Runtime& Runtime::current() {
  auto& [mutex, living, last] = runtimes();
  const std::scoped_lock lock{mutex};
  if (living.empty()) missRuntime();
  return *living.back();
}

std::shared_ptr<Environment> Runtime::currentEnvironment() {
  auto& [mutex, living, last] = runtimes();
  const std::scoped_lock lock{mutex};
  return living.empty() ? nullptr : living.back()->environment_;
}

std::shared_ptr<Environment> livingEnvironment() {
  auto& [mutex, living, last] = runtimes();
  const std::scoped_lock lock{mutex};
  auto environment = living.empty() ? last.lock() : living.back()->environment();
  if (!environment) missRuntime();
  return environment;
}

const Platform& Runtime::platform() const { return environment_->platform(); }

const Limits& Runtime::limits() const { return environment_->limits(); }

NotificationCenter& Runtime::notifications() const { return environment_->notifications(); }

}  // namespace tavo
