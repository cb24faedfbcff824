#pragma once

#include <filesystem>
#include <string>

namespace tavo::gtk {

// Where the library finds what belongs to it. The first of these that names a folder counts:
// `chosen`, which is the host's word; the environment (see pathOfEnvironment); the place where an
// installation has it, seen from the file that this code was loaded from, so that an installation
// may be moved; and the place that was set when the library was built. Paths that are not absolute
// name nothing. Any thread.

// Modules and their helper program; the variable is TAVO_MODULE_DIR.
[[nodiscard]] std::filesystem::path moduleFolder(const std::string& chosen = {});
// Scripts and pictures; the variable is TAVO_RESOURCE_DIR.
[[nodiscard]] std::filesystem::path resourceFolder(const std::string& chosen = {});

}  // namespace tavo::gtk
