#include "AdServer/LiveEvents.h"

#include <cstdlib>

#include "AdServer/HeldReplies.h"
#include "Gtk/Guarded.h"

namespace tavo::adserver {

namespace {

constexpr std::size_t mostWatching = 16;

std::string eventOf(const RecordedRequest& request) {
  return "id: " + std::to_string(request.sequence) + "\ndata: " + request.toJson() + "\n\n";
}

// A browser that lost its stream says what it has seen.
std::uint64_t lastSeen(SoupServerMessage* message) {
  const char* const id = soup_message_headers_get_one(
      soup_server_message_get_request_headers(message), "Last-Event-ID");
  return id == nullptr ? 0 : std::strtoull(id, nullptr, 10);
}

void append(SoupServerMessage* message, const std::string& text) {
  soup_message_body_append(soup_server_message_get_response_body(message), SOUP_MEMORY_COPY,
                           text.data(), text.size());
}

}  // namespace

LiveEvents::~LiveEvents() {
  for (const auto& message : watching_) {
    g_signal_handlers_disconnect_by_data(message.get(), this);
    endConnection(message.get());
  }
}

bool LiveEvents::add(SoupServerMessage* message) {
  if (watching_.size() >= mostWatching) return false;
  soup_server_message_set_status(message, 200, nullptr);
  auto* const headers = soup_server_message_get_response_headers(message);
  soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
  soup_message_headers_replace(headers, "Content-Type", "text/event-stream");
  soup_message_headers_replace(headers, "Cache-Control", "no-store");
  soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
  std::string begin = "retry: 1000\n\n";
  const auto seen = lastSeen(message);
  for (const auto& request : record_.requests()) {
    if (request.sequence > seen) begin += eventOf(request);
  }
  append(message, begin);
  watching_.push_back(gtk::GPtr<SoupServerMessage>::share(message));
  g_signal_connect(message, "finished", G_CALLBACK(+[](SoupServerMessage* ended, gpointer self) {
                     gtk::guarded([&] { static_cast<LiveEvents*>(self)->drop(ended); });
                   }),
                   this);
  return true;
}

void LiveEvents::drop(SoupServerMessage* message) {
  watching_.remove_if([message](const auto& one) { return one.get() == message; });
}

void LiveEvents::tell(const RecordedRequest& request) {
  if (watching_.empty()) return;
  const std::string event = eventOf(request);
  for (const auto& message : watching_) {
    append(message.get(), event);
    soup_server_message_unpause(message.get());
  }
}

}  // namespace tavo::adserver
