#include "Gtk/Http/HttpBodyReader.h"

#include <algorithm>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

constexpr std::size_t readSize = std::size_t{64} * 1024;
// Room for a body of unknown length to begin with: most are pixels.
constexpr std::size_t firstReadSize = std::size_t{1024};
// At the speed of a decompressor this is about a millisecond.
constexpr std::size_t shareOfTurn = 4 * readSize;
// A server may announce any length; no more is set aside on its word.
constexpr std::size_t mostReserved = std::size_t{4} * 1024 * 1024;

using Callback = std::function<void()>;

gboolean streamReadable(GObject* /*stream*/, gpointer callback) {
  guarded(*static_cast<Callback*>(callback));
  return G_SOURCE_REMOVE;
}

}  // namespace

HttpBodyReader::HttpBodyReader(GPtr<GInputStream> stream, std::size_t limit, std::size_t expected)
    : stream_{std::move(stream)}, limit_{limit}, expected_{std::min(expected, mostReserved)} {
  body_.reserve(expected_ + 1);
}

HttpBodyReader::~HttpBodyReader() {
  if (wait_) g_source_destroy(wait_.get());
}

HttpBodyReader::State HttpBodyReader::readAvailable() {
  endsTurn_ = false;
  const std::size_t start = filled_;
  while (filled_ - start < shareOfTurn) {
    const std::size_t before = filled_;
    const State state = readOnce();
    if (state != State::waiting || filled_ == before) return state;
  }
  endsTurn_ = true;
  return State::waiting;
}

// Waiting with nothing new filled means that nothing is there now.
HttpBodyReader::State HttpBodyReader::readOnce() {
  const std::size_t room = roomForNextRead();
  body_.resize(filled_ + room);
  const gssize count = g_pollable_input_stream_read_nonblocking(
      G_POLLABLE_INPUT_STREAM(stream_.get()), body_.data() + filled_, room, nullptr,
      failure_.out());
  if (count == 0) return State::complete;
  if (count < 0) {
    return failure_.is(G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) ? State::waiting : State::failed;
  }
  filled_ += static_cast<std::size_t>(count);
  return limit_ > 0 && filled_ > limit_ ? State::tooLarge : State::waiting;
}

// One byte beyond what is expected shows the end, and one beyond the limit tells a body that just
// fits from one that does not.
std::size_t HttpBodyReader::roomForNextRead() const {
  const bool hasItsLength = expected_ > 0 && expected_ >= filled_;
  const std::size_t wanted =
      hasItsLength ? expected_ - filled_ + 1 : std::max(filled_, firstReadSize);
  const std::size_t room = std::min(wanted, readSize);
  return limit_ > 0 ? std::min(room, limit_ + 1 - filled_) : room;
}

void HttpBodyReader::whenReadable(Callback readable) {
  if (wait_) g_source_destroy(wait_.get());
  wait_.reset(
      g_pollable_input_stream_create_source(G_POLLABLE_INPUT_STREAM(stream_.get()), nullptr));
  // A body that comes faster than it is read lets the window paint between two turns.
  if (endsTurn_) g_source_set_priority(wait_.get(), G_PRIORITY_DEFAULT_IDLE);
  g_source_set_callback(wait_.get(), G_SOURCE_FUNC(&streamReadable),
                        new Callback{std::move(readable)},
                        [](gpointer data) { delete static_cast<Callback*>(data); });
  g_source_attach(wait_.get(), nullptr);
}

std::string HttpBodyReader::takeBody() {
  body_.resize(filled_);
  filled_ = 0;
  return std::move(body_);
}

}  // namespace tavo::gtk
