#include "Gtk/Web/FetchedBytes.h"

#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

// Outlives the page while answers are on their way.
struct FetchedBytes::Count {
  NetworkMeter& meter;
  std::uint64_t limit = 0;
  std::function<void()> exceeded;
  std::uint64_t bytes = 0;
  std::uint64_t metered = 0;                      // of the page: only ever more
  std::weak_ptr<NetworkMeter::Told> following{};  // while an answer without a length is open

  void add(std::uint64_t more) {
    const bool wasExceeded = bytes > limit;
    bytes += more;
    if (!wasExceeded && bytes > limit) exceeded();
  }
};

// One answer, from its request to its last byte.
struct FetchedBytes::Answer {
  std::weak_ptr<Count> count;
  std::shared_ptr<NetworkMeter::Told> following{};  // null: it has a length, or no head yet
  std::uint64_t meteredBefore = 0;
};

namespace {

std::uint64_t declaredLength(WebKitWebResource* resource) {
  auto* const response = webkit_web_resource_get_response(resource);
  return response == nullptr ? 0 : webkit_uri_response_get_content_length(response);
}

// What the answers of a page without a length have in common.
template <typename Count>
std::shared_ptr<NetworkMeter::Told> follow(const std::shared_ptr<Count>& count) {
  if (auto all = count->following.lock()) return all;
  auto told =
      std::make_shared<NetworkMeter::Told>([weak = std::weak_ptr{count}](std::uint64_t bytes) {
        const auto held = weak.lock();
        if (!held) return;
        held->metered += bytes;
        held->add(bytes);
      });
  count->following = told;
  count->meter.follow(told);
  return told;
}

}  // namespace

FetchedBytes::FetchedBytes(WebKitWebView* view, SignalConnections& connections, NetworkMeter& meter,
                           std::uint64_t limit, std::function<void()> exceeded)
    : count_{std::make_shared<Count>(Count{meter, limit, std::move(exceeded)})} {
  connections.connect(view, "resource-load-started", fenced<&FetchedBytes::onResource>, this);
}

void FetchedBytes::beginPage() {
  count_ = std::make_shared<Count>(Count{count_->meter, count_->limit, count_->exceeded});
}

void FetchedBytes::startAnew() { count_->bytes = 0; }

void FetchedBytes::onResource(WebKitWebView* /*view*/, WebKitWebResource* resource,
                              WebKitURIRequest* /*request*/, FetchedBytes* self) {
  using Held = std::shared_ptr<Answer>;
  const auto drop = [](gpointer answer, GClosure*) { delete static_cast<Held*>(answer); };
  const auto answer = std::make_shared<Answer>(Answer{self->count_});
  const auto copy = [&] { return std::make_unique<Held>(answer).release(); };
  g_signal_connect_data(resource, "notify::response", G_CALLBACK(fenced<&FetchedBytes::onResponse>),
                        copy(), drop, GConnectFlags{});
  g_signal_connect_data(resource, "finished", G_CALLBACK(fenced<&FetchedBytes::onFinished>), copy(),
                        drop, GConnectFlags{});
}

void FetchedBytes::onResponse(WebKitWebResource* resource, GParamSpec* /*property*/,
                              gpointer held) {
  Answer& answer = **static_cast<std::shared_ptr<Answer>*>(held);
  const auto count = answer.count.lock();
  if (!count) return;
  if (const auto length = declaredLength(resource); length > 0) {
    count->meter.explain(length);
    return count->add(length);
  }
  answer.following = follow(count);
  answer.meteredBefore = count->metered;
}

void FetchedBytes::onFinished(WebKitWebResource* resource, gpointer held) {
  auto& answer = *static_cast<std::shared_ptr<Answer>*>(held);
  answer->following.reset();
  if (declaredLength(resource) > 0) return;
  webkit_web_resource_get_data(resource, nullptr, fenced<&FetchedBytes::onData>,
                               std::make_unique<std::shared_ptr<Answer>>(answer).release());
}

// What was metered on its way is not counted twice.
void FetchedBytes::onData(GObject* resource, GAsyncResult* result, gpointer held) {
  const std::unique_ptr<std::shared_ptr<Answer>> answer{
      static_cast<std::shared_ptr<Answer>*>(held)};
  gsize length = 0;
  g_free(
      webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(resource), result, &length, nullptr));
  const auto count = (*answer)->count.lock();
  if (!count) return;
  const std::uint64_t metered = count->metered - (*answer)->meteredBefore;
  if (length > metered) count->add(length - metered);
}

}  // namespace tavo::gtk
