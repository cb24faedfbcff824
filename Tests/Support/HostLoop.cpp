#include "Support/HostLoop.h"

#include <glib.h>

namespace tavo::test {

bool runUntil(const std::function<bool()>& done, std::chrono::seconds patience) {
  constexpr guint lookAgain = 20;  // milliseconds
  const auto deadline = std::chrono::steady_clock::now() + patience;
  const guint waker = g_timeout_add(
      lookAgain, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  while (!done() && std::chrono::steady_clock::now() < deadline) {
    g_main_context_iteration(nullptr, TRUE);
  }
  g_source_remove(waker);
  return done();
}

}  // namespace tavo::test
