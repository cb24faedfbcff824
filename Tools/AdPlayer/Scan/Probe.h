#pragma once

#include <string>
#include <string_view>

#include <tavo/Date.h>

namespace tavo::adplayer {

// What a page is told that is not so, to see whether it does something else then.
struct Pretence {
  Seconds clock{0};        // added to the time of day
  std::string language{};  // instead of the machine's, such as "ja"; empty: as it is
};

// The script that scanned pages run first; see `Inspection::pageProbe`. What it tells has a field
// "what": "storage", "fingerprint", "refused", "nameless", "address" or "looked over".
[[nodiscard]] std::string probe(const Pretence& pretence);

// Probe.js, before it is filled in.
[[nodiscard]] std::string_view probeText();

}  // namespace tavo::adplayer
