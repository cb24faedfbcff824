#include "AdServer/ReplySender.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "AdServer/BodyPieces.h"
#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"

namespace tavo::adserver {

namespace {

constexpr std::size_t pieceBytes = std::size_t{64} * 1024;
constexpr std::uint64_t ticksPerSecond = 10;

// A body on its way in pieces. Belongs to the message and ends with it.
class Stream {
 public:
  Stream(const Reply& reply, SoupServerMessage* message)
      : message_{message},
        pieces_{reply.body, reply.delivery.padToBytes, reply.delivery.gzip},
        left_{reply.delivery.behaviour == Behaviour::Cut ? pieces_.size() / 2 : pieces_.size()},
        cut_{reply.delivery.behaviour == Behaviour::Cut},
        gzip_{reply.delivery.gzip},
        bytesPerSecond_{reply.delivery.bytesPerSecond} {}
  ~Stream() {
    if (timer_) g_source_destroy(timer_.get());
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  static void start(const Reply& reply, SoupServerMessage* message) {
    auto stream = std::make_unique<Stream>(reply, message);
    auto* const started = stream.get();
    g_object_set_data_full(G_OBJECT(message), "adserver-stream", stream.release(),
                           [](gpointer data) { delete static_cast<Stream*>(data); });
    started->begin();
  }

 private:
  void begin() {
    auto* const headers = soup_server_message_get_response_headers(message_);
    if (gzip_) {
      soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
    } else {
      soup_message_headers_set_content_length(headers, static_cast<goffset>(pieces_.size()));
    }
    soup_message_body_set_accumulate(soup_server_message_get_response_body(message_), FALSE);
    const auto go = +[](SoupServerMessage*, gpointer self) {
      gtk::guarded([&] { static_cast<Stream*>(self)->wrote(); });
    };
    g_signal_connect(message_, "wrote-headers", G_CALLBACK(go), this);
    g_signal_connect(message_, "wrote-chunk", G_CALLBACK(go), this);
  }

  void wrote() {
    if (bytesPerSecond_ == 0 || first_) return give();
    timer_.reset(g_timeout_source_new(1'000 / ticksPerSecond));
    g_source_set_callback(
        timer_.get(),
        [](gpointer self) -> gboolean {
          gtk::guarded([&] { static_cast<Stream*>(self)->give(); });
          return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(timer_.get(), g_main_context_get_thread_default());
  }

  void give() {
    first_ = false;
    const auto tick = bytesPerSecond_ == 0 ? pieceBytes : bytesPerSecond_ / ticksPerSecond;
    const auto most = std::clamp<std::uint64_t>(tick, 1, pieceBytes);
    const auto length = cut_ && !gzip_ ? std::min(most, left_) : most;
    const std::string piece = length == 0 ? std::string{} : pieces_.next(length);
    left_ -= std::min<std::uint64_t>(left_, length);
    auto* const body = soup_server_message_get_response_body(message_);
    const bool ends = piece.empty() || (cut_ && gzip_ && left_ == 0);
    if (ends && cut_) return endConnection(message_);
    if (ends) {
      soup_message_body_complete(body);
    } else {
      soup_message_body_append(body, SOUP_MEMORY_COPY, piece.data(), piece.size());
    }
    soup_server_message_unpause(message_);
  }

  SoupServerMessage* message_;
  BodyPieces pieces_;
  std::uint64_t left_;  // before the hang-up
  bool cut_;
  bool gzip_;
  bool first_ = true;
  std::uint64_t bytesPerSecond_;
  gtk::GSourcePtr timer_;
};

bool goesInPieces(const Delivery& delivery) {
  return delivery.gzip || delivery.padToBytes > 0 || delivery.bytesPerSecond > 0 ||
         delivery.behaviour == Behaviour::Cut;
}

void writeHeaders(const Reply& reply, SoupServerMessage* message) {
  auto* const headers = soup_server_message_get_response_headers(message);
  for (const auto& [name, value] : reply.delivery.headers) {
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  }
  if (reply.delivery.gzip) soup_message_headers_append(headers, "Content-Encoding", "gzip");
  if (!reply.problem.empty()) {
    const gtk::GText line{g_uri_escape_string(reply.problem.c_str(), " \"/:;,.'?(){}$", TRUE)};
    soup_message_headers_append(headers, problemHeader, line.get());
  }
}

// Ranges that reach beyond the body end with it; libsoup 3.2 answers them without a byte.
void boundRanges(SoupServerMessage* message, std::size_t size) {
  auto* const headers = soup_server_message_get_request_headers(message);
  SoupRange* ranges = nullptr;
  int count = 0;
  const auto last = static_cast<goffset>(size) - 1;
  if (!soup_message_headers_get_ranges(headers, static_cast<goffset>(size), &ranges, &count))
    return;
  const bool isThere = std::all_of(ranges, ranges + count,
                                   [last](const auto& range) { return range.start <= last; });
  for (SoupRange* range = ranges; range != ranges + count; ++range) {
    range->start = std::max<goffset>(range->start, 0);
    range->end = std::min(range->end, last);
  }
  if (isThere) soup_message_headers_set_ranges(headers, ranges, count);
  soup_message_headers_free_ranges(headers, ranges);
}

void write(const Reply& reply, SoupServerMessage* message) {
  soup_server_message_set_status(message, reply.delivery.status, nullptr);
  writeHeaders(reply, message);
  const auto* const type = reply.delivery.contentType.c_str();
  const bool hasBody = soup_server_message_get_method(message) != SOUP_METHOD_HEAD;
  if (goesInPieces(reply.delivery) && hasBody) {
    auto* const headers = soup_server_message_get_response_headers(message);
    soup_message_headers_replace(headers, "Content-Type", type);
    Stream::start(reply, message);
  } else {
    boundRanges(message, reply.body.size());
    soup_server_message_set_response(message, type, SOUP_MEMORY_COPY, reply.body.data(),
                                     reply.body.size());
  }
}

}  // namespace

void ReplySender::send(const Reply& reply, SoupServerMessage* message) {
  write(reply, message);
  switch (reply.delivery.behaviour) {
    case Behaviour::CloseEarly:
      endConnection(message);
      break;
    case Behaviour::NeverAnswer:
      held_.holdForGood(message);
      break;
    case Behaviour::Answer:
    case Behaviour::Cut:
      if (reply.delivery.delay.count() > 0) held_.holdFor(reply.delivery.delay, message);
      break;
  }
}

}  // namespace tavo::adserver
