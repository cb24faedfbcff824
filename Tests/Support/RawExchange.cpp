#include "Support/RawExchange.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "Gtk/GPtr.h"

namespace tavo::test {

namespace {

using gtk::GPtr;

// Everything from the third slash on, so that odd paths go over the wire as they are.
std::string_view pathOfUrl(std::string_view url) {
  const auto hostStart = url.find("//") + 2;
  return url.substr(std::min(url.find('/', hostStart), url.size()));
}

std::string_view hostOfUrl(std::string_view url) {
  const auto hostStart = url.find("//") + 2;
  return url.substr(hostStart, url.find('/', hostStart) - hostStart);
}

GPtr<GSocketConnection> connectTo(std::string_view host) {
  const auto client = GPtr<GSocketClient>::adopt(g_socket_client_new());
  g_socket_client_set_timeout(client.get(), 10);
  return GPtr<GSocketConnection>::adopt(g_socket_client_connect_to_host(
      client.get(), std::string{host}.c_str(), 80, nullptr, nullptr));
}

std::string readAll(GInputStream* input, std::size_t mostBytes) {
  std::string answer;
  std::array<char, 65'536> chunk{};
  gssize size = 1;
  while (size > 0 && answer.size() < mostBytes) {
    const auto wanted = std::min(chunk.size(), mostBytes - answer.size());
    size = g_input_stream_read(input, chunk.data(), wanted, nullptr, nullptr);
    answer.append(chunk.data(), static_cast<std::size_t>(std::max<gssize>(size, 0)));
  }
  return answer;
}

RawResponse split(std::string_view answer) {
  constexpr std::string_view version = "HTTP/1.1 ";
  const auto headEnd = std::min(answer.find("\r\n\r\n"), answer.size());
  RawResponse response;
  response.head = answer.substr(0, headEnd);
  response.body = answer.substr(std::min(headEnd + 4, answer.size()));
  if (answer.starts_with(version)) {
    std::from_chars(answer.data() + version.size(), answer.data() + answer.size(), response.status);
  }
  return response;
}

}  // namespace

std::string rawExchange(std::string_view url, std::string_view request, std::size_t mostBytes) {
  const auto connection = connectTo(hostOfUrl(url));
  if (!connection) {
    return {};
  }
  auto* const stream = G_IO_STREAM(connection.get());
  g_output_stream_write_all(g_io_stream_get_output_stream(stream), request.data(), request.size(),
                            nullptr, nullptr, nullptr);
  return readAll(g_io_stream_get_input_stream(stream), mostBytes);
}

std::string RawResponse::header(std::string_view name) const {
  const auto line = "\r\n" + std::string{name} + ": ";
  const auto start = head.find(line);
  return start == head.npos
             ? std::string{}
             : head.substr(start + line.size(), head.find("\r\n", start + 2) - start - line.size());
}

RawResponse request(std::string_view method, std::string_view url, std::string_view headerLines) {
  std::string text{method};
  text.append(" ").append(pathOfUrl(url)).append(" HTTP/1.1\r\nHost: ").append(hostOfUrl(url));
  text.append("\r\nConnection: close\r\n").append(headerLines).append("\r\n");
  return split(rawExchange(url, text));
}

RawResponse get(std::string_view url, std::string_view headerLines) {
  return request("GET", url, headerLines);
}

}  // namespace tavo::test
