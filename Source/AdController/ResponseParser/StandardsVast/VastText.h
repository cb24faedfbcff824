#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <tavo/Url.h>
#include <tavo/VastTracking.h>

#include "External/TBXML/XTBXML.h"

namespace tavo {

// How the texts of a VAST document read by the standards. Nothing here fails: what makes no sense
// is empty, none or zero.

// `text` with its references ("&amp;", "&#38;", "&#x26;") decoded; unknown ones stay.
[[nodiscard]] std::string decodedReferences(std::string_view text);

// The element's text without blanks around it; outside CDATA its references are decoded.
[[nodiscard]] std::string plainText(const XTBXMLElement* element);
// The value of the attribute of this name, in any letter case; empty without one.
[[nodiscard]] std::string attributeText(const XTBXMLElement* element, std::string_view name);
[[nodiscard]] std::optional<int> attributeNumber(const XTBXMLElement* element,
                                                 std::string_view name);
// "true" and "1", "false" and "0"; else none.
[[nodiscard]] std::optional<bool> attributeSwitch(const XTBXMLElement* element,
                                                  std::string_view name);

// `address`, with macros or not, as an absolute one: a relative one belongs to `base`.
[[nodiscard]] std::string absoluteAddress(const Url& base, const std::string& address);

// Seconds of "hours:minutes:seconds", fractions included; none for anything else, and below zero.
[[nodiscard]] std::optional<double> vastSeconds(std::string_view text);
// Such a time, a percentage up to 100, or plain seconds.
[[nodiscard]] std::optional<VastOffset> vastOffset(std::string_view text);

}  // namespace tavo
