#pragma once

#include <glib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace tavo::test {

// A folder of its own for one test, gone with everything in it when the test ends.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    char* const made = g_dir_make_tmp("tavo-test-XXXXXX", nullptr);
    if (made == nullptr) throw std::runtime_error{"no temporary folder"};
    folder_ = made;
    g_free(made);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }

 private:
  std::filesystem::path folder_;
};

}  // namespace tavo::test
