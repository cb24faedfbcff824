#pragma once

#include <glib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

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
  void write(const std::string& name, std::string_view bytes) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::ofstream{folder_ / name, std::ios::binary} << bytes;
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace tavo::test
