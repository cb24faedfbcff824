#include "Runtime/MainThread.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace tavo {

namespace {
std::atomic<std::thread::id> mainThread{};
}  // namespace

void becomeMainThread() { mainThread = std::this_thread::get_id(); }

void requireMainThread(const char* call) {
  const auto known = mainThread.load(std::memory_order_relaxed);
  if (known == std::this_thread::get_id() || known == std::thread::id{}) return;
  std::fprintf(stderr,
               "TAVO: %s was called on another thread than the one that made the tavo::Runtime. "
               "Have the main loop call it there.\n",
               call);
  std::abort();
}

}  // namespace tavo
