#pragma once

#include <filesystem>
#include <string>

namespace tavo::gtk {

// The folder of the library's modules and their helper program: the one that the environment
// variable TAVO_MODULE_DIR names, else the one that was set when this library was built.
[[nodiscard]] std::filesystem::path moduleFolder();

// Loads the module `file` and returns the function that it exports as `entry`, or null, with the
// reason in `failure`. A module stays for the rest of the process: what it is made of leaves
// threads and type registrations behind that no unloading can take back. Any thread.
[[nodiscard]] void* moduleEntry(const std::filesystem::path& file, const char* entry,
                                std::string& failure);

}  // namespace tavo::gtk
