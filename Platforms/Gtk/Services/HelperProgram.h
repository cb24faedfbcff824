#pragma once

#include <optional>
#include <string>
#include <vector>

#include <tavo/Date.h>

namespace tavo::gtk {

// Runs a program that answers within milliseconds and waits for it: `arguments` starts with its
// file name. Returns what it wrote to its output (64 KB at most), or nothing when it cannot be
// started, fails, or is not done within `deadline`; it is then ended. Its error output is dropped.
// Blocks the calling thread, so only for what has to be known before the next step.
[[nodiscard]] std::optional<std::string> runHelperProgram(const std::vector<std::string>& arguments,
                                                          Seconds deadline);

}  // namespace tavo::gtk
