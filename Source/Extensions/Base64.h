#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavo {

// Base64 with the standard alphabet and padding (RFC 4648).

[[nodiscard]] std::string base64Encoding(std::string_view data);

// The same with a line feed after every `lineLength` characters, the last line excepted; 0 gives
// one line.
[[nodiscard]] std::string base64EncodingWithLineLength(std::string_view data,
                                                       std::size_t lineLength);

// The bytes that `text` stands for. Characters outside the alphabet, line ends among them, are
// passed over, and the first "=" ends the text. None when a single character is left over, which
// is not enough for a byte.
[[nodiscard]] std::optional<std::string> dataWithBase64EncodedString(std::string_view text);

}  // namespace tavo
