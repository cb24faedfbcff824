#include "Gtk/Services/NewFile.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <cerrno>

#include "Gtk/ForeignText.h"

namespace tavo::gtk {

namespace {

constexpr int mostNames = 10'000;
constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0644;

// -1, with errno set, when no name is free or the folder takes no file.
int createNew(const std::string& folder, const std::string& name, const std::string& ending,
              std::string& path) {
  for (int number = 1; number <= mostNames; ++number) {
    const std::string suffix = number == 1 ? "" : " (" + std::to_string(number) + ")";
    path = folder;
    path.append("/").append(name).append(suffix).append(ending);
    const int file =
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode);
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  // A full disk may show only now.
  return fsync(file) == 0;
}

}  // namespace

std::optional<std::string> writeNewFile(const std::string& folder, const std::string& name,
                                        const std::string& ending, std::string_view bytes,
                                        std::string& reason) {
  std::string path;
  const int file = g_mkdir_with_parents(folder.c_str(), folderMode) == 0
                       ? createNew(folder, name, ending, path)
                       : -1;
  if (file < 0) {
    reason = textOf(g_strerror(errno));
    return std::nullopt;
  }
  const bool written = writeAll(file, bytes);
  const int failure = errno;
  if (close(file) == 0 && written) return path;
  reason = textOf(g_strerror(written ? errno : failure));
  unlink(path.c_str());
  return std::nullopt;
}

}  // namespace tavo::gtk
