#pragma once

#include <string>
#include <string_view>

#include <tavo/Geometry.h>

namespace tavo {

// What a server says when the slot is to be filled by an external ad network.
struct MediationInstruction {
  std::string placementId;  // without blanks around it; empty when not given
  Size size;                // points; zero when not given
};

// Whether the text names client-side mediation and, later in the same line, a placement.
[[nodiscard]] bool holdsMediationInstruction(std::string_view text);

// Gathers the attributes of every "ClientSideMediation" element of the text, read as XML, depth
// first; what a later element says replaces what an earlier one said.
[[nodiscard]] MediationInstruction readMediationInstruction(std::string_view text);

}  // namespace tavo
