#include "Support/HostileConnection.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "Gtk/GPtr.h"

namespace tavo::test {

namespace {

std::string headOf(int status, std::string_view headerLines) {
  return "HTTP/1.1 " + std::to_string(status) + " Status\r\nConnection: close\r\n" +
         std::string{headerLines} + "\r\n";
}

std::string lengthLine(std::uint64_t bytes) {
  return "Content-Length: " + std::to_string(bytes) + "\r\n";
}

std::string_view targetOf(std::string_view request) {
  const auto start = std::min(request.find(' '), request.size() - 1) + 1;
  return request.substr(start, request.find(' ', start) - start);
}

unsigned hopOf(std::string_view target) {
  constexpr std::string_view marker = "?hop=";
  const auto start = target.find(marker);
  unsigned hop = 0;
  if (start != target.npos) {
    std::from_chars(target.data() + start + marker.size(), target.data() + target.size(), hop);
  }
  return hop;
}

// The path of the request under an address that is new each time.
std::string nextOf(std::string_view request) {
  return pathOf(request) + "?hop=" + std::to_string(hopOf(targetOf(request)) + 1);
}

// What the request calls the server.
std::string hostOf(std::string_view request) {
  constexpr std::string_view name = "\r\nHost: ";
  const auto start = std::min(request.find(name), request.size() - name.size()) + name.size();
  return std::string{request.substr(start, request.find("\r\n", start) - start)};
}

// Compresses blanks, up to a megabyte at a time, into one gzip stream.
class BlankCompressor {
 public:
  static constexpr std::uint64_t step = 1'000'000;

  // The next bytes of the stream. Each call's bytes can be expanded without those that follow.
  std::string_view add(std::uint64_t blanks, GConverterFlags flags) {
    gsize consumed = 0;
    gsize produced = 0;
    g_converter_convert(G_CONVERTER(compressor_.get()), blanks_.data(), blanks, compressed_.data(),
                        compressed_.size(), flags, &consumed, &produced, nullptr);
    return std::string_view{compressed_}.substr(0, produced);
  }

 private:
  const gtk::GPtr<GZlibCompressor> compressor_ =
      gtk::GPtr<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 9));
  const std::string blanks_ = std::string(step, ' ');
  std::string compressed_ = std::string(65'536, '\0');  // ample: blanks shrink to a thousandth
};

}  // namespace

std::string pathOf(std::string_view request) {
  const auto target = targetOf(request);
  return std::string{target.substr(0, target.find('?'))};
}

HostileConnection::HostileConnection(GSocketConnection* connection, GCancellable* stop)
    : connection_{connection}, stop_{stop} {}

HostileConnection::~HostileConnection() {
  g_io_stream_close(G_IO_STREAM(connection_), nullptr, nullptr);
}

std::string HostileConnection::readRequest() {
  constexpr std::size_t mostBytes = 1'000'000;
  auto* const input = g_io_stream_get_input_stream(G_IO_STREAM(connection_));
  std::string request;
  std::array<char, 4096> chunk{};
  while (request.find("\r\n\r\n") == request.npos) {
    const auto size = g_input_stream_read(input, chunk.data(), chunk.size(), stop_, nullptr);
    if (size <= 0 || request.size() > mostBytes) {
      return {};
    }
    request.append(chunk.data(), static_cast<std::size_t>(size));
  }
  return request;
}

void HostileConnection::behave(const Behaviour& behaviour, std::string_view request) {
  std::visit([&](const auto& wanted) { perform(wanted, request); }, behaviour);
}

void HostileConnection::perform(const PlainAnswer& answer, std::string_view request) {
  std::string lines = "Content-Type: " + answer.contentType + "\r\n";
  for (const auto& [name, value] : answer.headers) {
    lines.append(name).append(": ").append(value).append("\r\n");
  }
  const bool hasBody = !request.starts_with("HEAD ");
  write(headOf(answer.status, lines + lengthLine(answer.body.size())) +
        (hasBody ? answer.body : ""));
}

void HostileConnection::perform(const CloseBeforeAnswer&, std::string_view) {}

void HostileConnection::perform(const CloseInBody& close, std::string_view) {
  write(headOf(200, "Content-Type: application/json\r\n" + lengthLine(close.promisedBytes)) +
        close.body);
}

void HostileConnection::perform(const StallInBody& stall, std::string_view request) {
  if (write(headOf(200, lengthLine(stall.promisedBytes)) + stall.body)) {
    perform(NeverAnswer{}, request);
  }
}

void HostileConnection::perform(const NeverAnswer&, std::string_view) {
  while (pause(std::chrono::hours{1})) {
  }
}

void HostileConnection::perform(const Drip& drip, std::string_view) {
  auto head = headOf(200, "Content-Type: application/json\r\n");
  if (drip.place == Drip::Place::Header) {
    head.replace(head.size() - 2, 2, "X-Drip: ");  // in place of the line that ends the header
  }
  for (bool going = write(head); going; going = pause(drip.pause) && write(" ")) {
  }
}

void HostileConnection::perform(const HugeBody& huge, std::string_view) {
  const bool declared = huge.length == HugeBody::Length::Declared;
  const auto texts = huge.prefix.size() + huge.suffix.size();
  const auto filler = huge.bytes > texts ? huge.bytes - texts : 0;
  const auto length = declared ? lengthLine(texts + filler) : std::string{};
  if (write(headOf(200, "Content-Type: application/json\r\n" + length) + huge.prefix) &&
      writeFiller(filler)) {
    write(huge.suffix);
  }
}

void HostileConnection::perform(const GzipBomb& bomb, std::string_view) {
  BlankCompressor compressor;
  bool going = write(headOf(200, "Content-Type: application/json\r\nContent-Encoding: gzip\r\n"));
  for (auto left = bomb.expandedBytes; going && left > 0;) {
    const auto blanks = std::min(left, BlankCompressor::step);
    left -= blanks;
    going = write(compressor.add(blanks, left == 0 ? G_CONVERTER_INPUT_AT_END : G_CONVERTER_FLUSH));
  }
}

void HostileConnection::perform(const Redirect& redirect, std::string_view) {
  write(headOf(redirect.status, "Location: " + redirect.location + "\r\n" + lengthLine(0)));
}

void HostileConnection::perform(const RedirectLoop&, std::string_view request) {
  perform(Redirect{.location = nextOf(request)}, request);
}

void HostileConnection::perform(const EndlessChain& chain, std::string_view request) {
  constexpr std::string_view marker = "${next}";
  std::string document = chain.document;
  document.replace(document.find(marker), marker.size(),
                   "http://" + hostOf(request) + nextOf(request));
  perform(PlainAnswer{.body = document, .contentType = "text/xml"}, request);
}

void HostileConnection::perform(const HugeHeader& huge, std::string_view request) {
  perform(
      PlainAnswer{.body = R"({"Ad":[]})", .headers = {{"X-Huge", std::string(huge.bytes, 'h')}}},
      request);
}

void HostileConnection::perform(const Garbage& garbage, std::string_view) { write(garbage.bytes); }

bool HostileConnection::write(std::string_view bytes) {
  auto* const output = g_io_stream_get_output_stream(G_IO_STREAM(connection_));
  return g_output_stream_write_all(output, bytes.data(), bytes.size(), nullptr, stop_, nullptr) !=
         FALSE;
}

bool HostileConnection::writeFiller(std::uint64_t bytes) {
  const std::string filler(std::min<std::uint64_t>(bytes, 1'000'000), 'x');
  bool going = true;
  while (going && bytes > 0) {
    const auto size = std::min<std::uint64_t>(bytes, filler.size());
    going = write(std::string_view{filler}.substr(0, size));
    bytes -= size;
  }
  return going;
}

bool HostileConnection::pause(std::chrono::microseconds time) {
  // The client has nothing more to say, so the only thing to read is its hanging up.
  GError* failure = nullptr;
  g_socket_condition_timed_wait(g_socket_connection_get_socket(connection_), G_IO_IN, time.count(),
                                stop_, &failure);
  const bool timeHasPassed =
      failure != nullptr && g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
  g_clear_error(&failure);
  return timeHasPassed;
}

}  // namespace tavo::test
