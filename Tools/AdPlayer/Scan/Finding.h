#pragma once

#include <string>
#include <string_view>

namespace tavo::adplayer {

enum class Severity { note, warning, error };

// "note", "warning", "error": the words of SARIF, and of the command line.
[[nodiscard]] std::string_view nameOf(Severity severity);

// Something that playing a creative has shown.
struct Finding {
  std::string check{};  // the check's name, from the table of checks
  Severity severity = Severity::warning;
  std::string message{};  // one sentence for a person, without a full stop
  std::string place{};    // file or address that it is about; empty: the creative as a whole
  int line = 0;           // in that file; 0: not known
  int column = 0;

  friend bool operator==(const Finding&, const Finding&) = default;
};

}  // namespace tavo::adplayer
