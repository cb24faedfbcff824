#include "Support/HostLoop.h"

#include <glib.h>

#include <tavo/Runtime.h>

#include "Services/RunLoop.h"
#include "Support/Testing.h"

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

void settleRuntime() {
  bool settled = false;
  Runtime::current().platform().runLoop->post([&] { settled = true; });
  runUntil([&] { return settled; });
}

std::string askPage(WebView* page, const std::string& script) {
  if (page == nullptr) return "no page";
  std::optional<std::string> answer;
  page->evaluate(script, [&](const std::string& result) { answer = result; });
  EXPECT_TRUE(runUntil([&] { return answer.has_value(); })) << script;
  return answer.value_or("no answer");
}

}  // namespace tavo::test
