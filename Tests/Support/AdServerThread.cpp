#include "Support/AdServerThread.h"

#include <utility>

namespace tavo::test {

AdServerThread::AdServerThread(const std::filesystem::path& campaignFolder,
                               const Forwarding& forwarding) {
  std::promise<adserver::AdServer*> started;
  auto server = started.get_future();
  thread_ = std::thread{[this, campaignFolder, forwarding, promise = std::move(started)]() mutable {
    run(campaignFolder, forwarding, std::move(promise));
  }};
  server_ = server.get();
}

AdServerThread::~AdServerThread() {
  // Quitting from inside the loop works also when the loop has not begun to run yet.
  g_main_context_invoke(
      context_.get(),
      [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      loop_.get());
  thread_.join();
}

void AdServerThread::run(const std::filesystem::path& campaignFolder, const Forwarding& forwarding,
                         std::promise<adserver::AdServer*> started) {
  g_main_context_push_thread_default(context_.get());
  {
    adserver::AdServer server{campaignFolder};
    if (!forwarding.target.empty()) server.forwardTo(forwarding.target, forwarding.into);
    started.set_value(&server);
    g_main_loop_run(loop_.get());
  }
  g_main_context_pop_thread_default(context_.get());
}

}  // namespace tavo::test
