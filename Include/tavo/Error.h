#pragma once

#include <string>
#include <string_view>

namespace tavo {

// What went wrong, as a value. `domain` says who reports it, `code` what it is, `description` tells
// a developer in one sentence.
struct Error {
  std::string domain;
  int code = 0;
  std::string description;
  friend bool operator==(const Error&, const Error&) = default;
};

// Domain of the errors that this library makes itself.
inline constexpr std::string_view sdkErrorDomain = "com.CorvaneTAVO.CorvaneTAVOSDK";

// Domain and codes of errors that arise between this library and the other end of an exchange. They
// reach the host unchanged.
inline constexpr std::string_view transportErrorDomain = "com.CorvaneTAVO.transport";

enum class TransportError : int {
  unknown = -1,
  cancelled = -999,
  timedOut = -1001,
  unsupportedUrl = -1002,
  cannotConnect = -1004,
  connectionLost = -1005,
  tooManyRedirects = -1007,
  badServerResponse = -1011,
  cannotDecode = -1016,
  bodyTooLarge = -1103,
};

[[nodiscard]] inline Error makeError(TransportError code, std::string description) {
  return {std::string{transportErrorDomain}, static_cast<int>(code), std::move(description)};
}

}  // namespace tavo
