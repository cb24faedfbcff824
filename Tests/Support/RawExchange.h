#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace tavo::test {

// One HTTP exchange as bytes, for tests that must say exactly what goes over the wire. Blocks; the
// server has to run on another thread.

// Sends the bytes to the URL's host and port and reads until the server hangs up, `mostBytes` have
// come, or nothing came for ten seconds. The answer is empty when there is none.
[[nodiscard]] std::string rawExchange(
    std::string_view url, std::string_view request,
    std::size_t mostBytes = std::numeric_limits<std::size_t>::max());

struct RawResponse {
  int status = 0;    // 0 when the answer has no status line
  std::string head;  // status line and headers
  std::string body;

  // The first header of exactly this name, or an empty text.
  [[nodiscard]] std::string header(std::string_view name) const;
};

// Asks for the URL and splits the answer. `headerLines` each end in "\r\n".
[[nodiscard]] RawResponse request(std::string_view method, std::string_view url,
                                  std::string_view headerLines = {});
[[nodiscard]] RawResponse get(std::string_view url, std::string_view headerLines = {});

}  // namespace tavo::test
