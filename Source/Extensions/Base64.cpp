#include "Extensions/Base64.h"

#include <array>
#include <cstdint>

namespace tavo {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t none = 0xFF;

constexpr std::array<std::uint8_t, 256> valueOfLetter = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(none);
  for (std::size_t value = 0; value < alphabet.size(); ++value) {
    values[static_cast<unsigned char>(alphabet[value])] = static_cast<std::uint8_t>(value);
  }
  return values;
}();

// Four characters for one to three bytes.
void appendGroup(std::string& text, std::string_view bytes) {
  std::uint32_t bits = 0;
  for (std::size_t at = 0; at < 3; ++at) {
    bits = bits << 8 | (at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U);
  }
  for (std::size_t at = 0; at < 4; ++at) {
    text += at <= bytes.size() ? alphabet[bits >> (18 - 6 * at) & 63U] : '=';
  }
}

}  // namespace

std::string base64Encoding(std::string_view data) {
  std::string text;
  text.reserve((data.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < data.size(); at += 3) {
    appendGroup(text, data.substr(at, 3));
  }
  return text;
}

std::string base64EncodingWithLineLength(std::string_view data, std::size_t lineLength) {
  std::string text = base64Encoding(data);
  if (lineLength == 0 || text.size() <= lineLength) return text;
  std::string lines;
  lines.reserve(text.size() + text.size() / lineLength);
  for (std::size_t at = 0; at < text.size(); at += lineLength) {
    lines.append(at == 0 ? "" : "\n").append(text, at, lineLength);
  }
  return lines;
}

std::optional<std::string> dataWithBase64EncodedString(std::string_view text) {
  std::string data;
  data.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t bits = 0;
  std::size_t characters = 0;
  for (const char c : text.substr(0, text.find('='))) {
    const std::uint8_t value = valueOfLetter[static_cast<unsigned char>(c)];
    if (value == none) continue;
    bits = bits << 6 | value;
    // The second to fourth character of each group complete a byte.
    if (const std::size_t place = characters++ % 4; place != 0) {
      data += static_cast<char>(bits >> (6 - 2 * place) & 0xFFU);
    }
  }
  return characters % 4 == 1 ? std::nullopt : std::optional{std::move(data)};
}

}  // namespace tavo
