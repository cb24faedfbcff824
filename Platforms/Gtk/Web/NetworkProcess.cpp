#include "Gtk/Web/NetworkProcess.h"

#include <glib-unix.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "Gtk/Guarded.h"

namespace tavo::gtk {
namespace {

// The system cuts names after fifteen letters.
constexpr std::string_view processName = "(WebKitNetworkPr";

// Whether `folder` of /proc is about a child of this program with that name.
bool isNetworkProcess(const std::filesystem::path& folder) {
  std::ifstream file{folder / "stat"};
  int id = 0;
  int parent = 0;
  std::string name;
  std::string state;
  return file >> id >> name >> state >> parent && parent == getpid() && state != "Z" &&
         name.starts_with(processName);
}

}  // namespace

int idOfNetworkProcess() {
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator{"/proc", failure}) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (isNetworkProcess(entry.path())) return std::stoi(name);
  }
  return 0;
}

bool NetworkProcess::watch() {
  forget();
  const int id = idOfNetworkProcess();
  if (id == 0) return false;
  file_ = static_cast<int>(syscall(SYS_pidfd_open, id, 0));
  if (file_ < 0) return false;
  source_.reset(g_unix_fd_source_new(file_, G_IO_IN));
  g_source_set_callback(source_.get(), G_SOURCE_FUNC(fenced<&NetworkProcess::onReadable>), this,
                        nullptr);
  g_source_attach(source_.get(), nullptr);
  return true;
}

bool NetworkProcess::hasEnded() const {
  pollfd question{file_, POLLIN, 0};
  return file_ >= 0 && poll(&question, 1, 0) > 0;
}

gboolean NetworkProcess::onReadable(gint /*file*/, GIOCondition /*condition*/, gpointer self) {
  auto& process = *static_cast<NetworkProcess*>(self);
  g_source_destroy(process.source_.get());
  process.ended_();
  return G_SOURCE_REMOVE;
}

void NetworkProcess::forget() {
  if (source_) g_source_destroy(source_.get());
  source_.reset();
  if (file_ >= 0) close(file_);
  file_ = -1;
}

}  // namespace tavo::gtk
