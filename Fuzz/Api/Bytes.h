#pragma once

#include <cstddef>
#include <cstdint>

namespace tavo::fuzz {

// The fuzzer's input, as choices. Past its end every choice is the first one.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : at_{data}, end_{data + size} {}

  [[nodiscard]] bool empty() const { return at_ == end_; }
  // One of 0 ... count - 1.
  [[nodiscard]] std::size_t choose(std::size_t count) { return empty() ? 0 : *at_++ % count; }
  [[nodiscard]] bool flip() { return choose(2) == 1; }
  template <typename Rows>
  [[nodiscard]] const auto& pick(const Rows& rows) {
    return rows[choose(sizeof(rows) / sizeof(rows[0]))];
  }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

}  // namespace tavo::fuzz
