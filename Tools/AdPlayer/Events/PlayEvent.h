#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/Inspection.h>

namespace tavo::adplayer {

// One thing that happened while something was played. Kinds are those of the inspection (see
// tavo/Inspection.h) and
//
//   callback   the library told its host something
//   ping       a tracking ping has come to an end: "url", "context", "status", "seconds"
//   stall      the program's loop stood still for more than 16 ms: "milliseconds"
//   step       what the tester did: a tap, a rotation
//   expect     an expectation was met or not: "met" is "yes" or "no"
//   picture    a picture was written: "file"
//   outcome    how it went: "loaded", "failed", "nothing"
struct PlayEvent {
  Seconds time{};  // since the play began
  std::string kind{};
  std::string text{};
  std::vector<InspectionField> fields{};

  [[nodiscard]] std::string_view field(std::string_view name) const;
  // The event as one line of JSON: {"time": 0.012, "kind": ..., "text": ..., "fields": [[n, v]]}.
  [[nodiscard]] std::string toJson() const;
};

}  // namespace tavo::adplayer
