#pragma once

#include <string>
#include <string_view>

namespace tavo {

// What went wrong, as a value. The library throws nothing: a failure arrives as an Error in an
// operation of the host's delegate. Codes are compared together with their domain; the text may
// change between versions.
struct Error {
  std::string domain;  // who reports it: one of the domains below, or that of a movie or a page
  int code = 0;        // what it is, within the domain
  std::string description;  // one sentence for a developer; shown to nobody
  friend bool operator==(const Error&, const Error&) = default;
};

// Domain of the errors that this library makes itself; their codes stand in SdkErrors.h.
inline constexpr std::string_view sdkErrorDomain = "com.CorvaneTAVO.CorvaneTAVOSDK";

// Domain and codes of errors that arise between this library and the other end of an exchange. They
// reach the host unchanged.
inline constexpr std::string_view transportErrorDomain = "com.CorvaneTAVO.transport";

enum class TransportError : int {
  unknown = -1,
  cancelled = -999,           // by this library: the ad that asked is gone
  timedOut = -1001,           // idle for too long, or the whole exchange took too long
  unsupportedUrl = -1002,     // neither http nor https, or no address at all
  cannotConnect = -1004,      // no such host, nobody listens, or no trust in its certificate
  connectionLost = -1005,     // in the middle of an answer
  tooManyRedirects = -1007,   // Limits::httpRedirects
  badServerResponse = -1011,  // not HTTP, or an answer that contradicts itself
  cannotDecode = -1016,       // a compressed body that cannot be read
  bodyTooLarge = -1103,       // for example Limits::answerBytes
};

// An error of the transport domain.
[[nodiscard]] inline Error makeError(TransportError code, std::string description) {
  return {std::string{transportErrorDomain}, static_cast<int>(code), std::move(description)};
}

}  // namespace tavo
