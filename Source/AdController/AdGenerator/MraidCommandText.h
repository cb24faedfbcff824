#pragma once

#include <string>
#include <string_view>

#include <tavo/Geometry.h>
#include <tavo/Url.h>

#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

// A command of a creative: mraid://name?key=value&key=value, the scheme in small letters.
struct MraidCommand {
  std::string name;  // letters as the creative wrote them
  MraidParameters parameters;

  friend bool operator==(const MraidCommand&, const MraidCommand&) = default;
};

// The command in a URL. Make the URL with Url::fromText when it comes from a page: engines let
// characters through that a strict URL may not hold, and a command must not get lost over them.
[[nodiscard]] MraidCommand mraidCommandFromUrl(const Url& url);

// The pairs of a query, values unescaped and always valid UTF-8 without NULs, keys as they stand.
// The last of several equal keys counts. A piece without "=" is its own value, and a value with "="
// in it keeps what follows the last one: creatives escape both, so neither can be told from a
// mistake.
[[nodiscard]] MraidParameters dictionaryFromQueryString(std::string_view query);

// The URL of an "open" command, the body of a text message escaped so that it survives as one
// parameter. Every other URL comes back as it is.
[[nodiscard]] std::string urlWithEscapedSmsBody(std::string url);

// The event that tells a creative its size in one text, "sizeChange:width=320.000000,height=...".
// The decimal sign is a point in every locale.
[[nodiscard]] std::string sizeChangeEventName(const Size& size);

}  // namespace tavo
