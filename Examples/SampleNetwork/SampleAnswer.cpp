#include "SampleAnswer.h"

#include <gio/gio.h>

namespace sample {

namespace {

// As long as a quick server takes.
constexpr guint answerMilliseconds = 50;

struct Task {
  std::weak_ptr<void> life;
  std::function<void()> run;
};

}  // namespace

std::optional<tavo::Error> refusalOf(const std::string& placementId) {
  if (placementId == "no-fill") return tavo::Error{"sample.network", 1, "No ad to fill the slot."};
  if (placementId == "error") return tavo::Error{"sample.network", 2, "The sample server is down."};
  return std::nullopt;
}

void later(const std::weak_ptr<void>& life, std::function<void()> task) {
  const auto run = [](gpointer data) -> gboolean {
    const auto* due = static_cast<Task*>(data);
    if (!due->life.expired()) due->run();
    return G_SOURCE_REMOVE;
  };
  const auto drop = [](gpointer data) { delete static_cast<Task*>(data); };
  g_timeout_add_full(G_PRIORITY_DEFAULT, answerMilliseconds, run, new Task{life, std::move(task)},
                     drop);
}

void openSite() {
  g_app_info_launch_default_for_uri_async("https://network.example/", nullptr, nullptr, nullptr,
                                          nullptr);
}

}  // namespace sample
