#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// A shared library that was opened. It stays for the rest of the process: what it is made of leaves
// threads and type registrations behind that no unloading can take back. Any thread.
class OpenModule {
 public:
  // Opens `file`; where that cannot be done the module is empty, with the reason in `failure`.
  OpenModule(const std::filesystem::path& file, std::string& failure);
  OpenModule() = default;

  // The address of what it exports as `name`; null when there is no such thing.
  [[nodiscard]] void* find(const std::string& name) const;
  explicit operator bool() const { return module_ != nullptr; }

 private:
  void* module_ = nullptr;  // as GLib knows it
};

// Opens the library's own module `file` and returns the function that it exports as `entry`, or
// null, with the reason in `failure`; a module of another version of the library is none. Any
// thread.
[[nodiscard]] void* moduleEntry(const std::filesystem::path& file, const char* entry,
                                std::string& failure);

// Has a thread open `file`, and then runs `opened` in a turn of the loop, whether it could be
// opened or not. Main thread.
void openInBackground(const std::filesystem::path& file, const std::shared_ptr<RunLoop>& runLoop,
                      std::function<void()> opened);

}  // namespace tavo::gtk
