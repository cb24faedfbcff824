#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavo::gtk {

// Writes a file that did not exist before: "<folder>/<name><ending>", or "<name> (2)<ending>" and
// so on while such a file is there. The folder is made where it is missing. Returns the file's
// path, or nothing, with `reason` filled, when it cannot be written in full; nothing is left behind
// then. Any thread.
[[nodiscard]] std::optional<std::string> writeNewFile(const std::string& folder,
                                                      const std::string& name,
                                                      const std::string& ending,
                                                      std::string_view bytes, std::string& reason);

}  // namespace tavo::gtk
