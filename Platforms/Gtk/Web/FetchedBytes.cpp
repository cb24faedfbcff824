#include "Gtk/Web/FetchedBytes.h"

#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

// Outlives the page while answers are on their way.
struct FetchedBytes::Count {
  std::uint64_t limit = 0;
  std::function<void()> exceeded;
  std::uint64_t bytes = 0;

  void add(std::uint64_t more) {
    const bool wasExceeded = bytes > limit;
    bytes += more;
    if (!wasExceeded && bytes > limit) exceeded();
  }
};

namespace {

std::uint64_t declaredLength(WebKitWebResource* resource) {
  auto* const response = webkit_web_resource_get_response(resource);
  return response == nullptr ? 0 : webkit_uri_response_get_content_length(response);
}

template <typename Handle>
Handle* copyOf(const Handle& handle) {
  return std::make_unique<Handle>(handle).release();
}

}  // namespace

FetchedBytes::FetchedBytes(WebKitWebView* view, SignalConnections& connections, std::uint64_t limit,
                           std::function<void()> exceeded)
    : count_{std::make_shared<Count>(Count{limit, std::move(exceeded), 0})} {
  connections.connect(view, "resource-load-started", fenced<&FetchedBytes::onResource>, this);
}

void FetchedBytes::startAnew() { count_->bytes = 0; }

void FetchedBytes::onResource(WebKitWebView* /*view*/, WebKitWebResource* resource,
                              WebKitURIRequest* /*request*/, FetchedBytes* self) {
  using Handle = std::weak_ptr<Count>;
  const auto drop = [](gpointer count, GClosure*) { delete static_cast<Handle*>(count); };
  const Handle count{self->count_};
  g_signal_connect_data(resource, "notify::response", G_CALLBACK(fenced<&FetchedBytes::onResponse>),
                        copyOf(count), drop, GConnectFlags{});
  g_signal_connect_data(resource, "finished", G_CALLBACK(fenced<&FetchedBytes::onFinished>),
                        copyOf(count), drop, GConnectFlags{});
}

void FetchedBytes::onResponse(WebKitWebResource* resource, GParamSpec* /*property*/,
                              gpointer count) {
  const auto held = static_cast<std::weak_ptr<Count>*>(count)->lock();
  if (held) held->add(declaredLength(resource));
}

void FetchedBytes::onFinished(WebKitWebResource* resource, gpointer count) {
  if (declaredLength(resource) > 0) return;
  webkit_web_resource_get_data(resource, nullptr, fenced<&FetchedBytes::onData>,
                               copyOf(*static_cast<std::weak_ptr<Count>*>(count)));
}

void FetchedBytes::onData(GObject* resource, GAsyncResult* result, gpointer count) {
  const std::unique_ptr<std::weak_ptr<Count>> weak{static_cast<std::weak_ptr<Count>*>(count)};
  gsize length = 0;
  g_free(
      webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(resource), result, &length, nullptr));
  if (const auto held = weak->lock()) held->add(length);
}

}  // namespace tavo::gtk
