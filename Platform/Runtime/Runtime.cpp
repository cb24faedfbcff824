#include "Runtime/Runtime.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace tavo {

namespace {
std::atomic<Runtime*> newest{nullptr};
std::atomic<std::uint64_t> lastId{0};
}  // namespace

Runtime::Runtime(Platform platform, Limits limits)
    : id_{++lastId},
      platform_{std::move(platform)},
      limits_{limits},
      previous_{newest.exchange(this)} {}

Runtime::~Runtime() {
  while (!owned_.empty()) owned_.pop_back();
  newest = previous_;
}

Runtime& Runtime::current() {
  Runtime* runtime = newest;
  if (runtime == nullptr) {
    std::fputs("TAVO: no tavo::Runtime exists. Make one before the first ad object.\n", stderr);
    std::abort();
  }
  return *runtime;
}

}  // namespace tavo
