#include "Gtk/Services/HelperProgram.h"

#include <gio/gio.h>
#include <gio/gunixinputstream.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include "Gtk/GPtr.h"

namespace tavo::gtk {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t outputLimit = std::size_t{64} * 1024;

// A signal to the process ends a wait early, and not the patience.
bool readable(int file, Clock::time_point until) {
  pollfd waiting{file, POLLIN, 0};
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    const int found = poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    if (found >= 0 || errno != EINTR) return found > 0;
  }
}

// Reads until the other end closes; nothing when that does not happen in time.
std::optional<std::string> readAll(int file, Clock::time_point until) {
  std::string text;
  std::array<char, 4096> block{};
  while (text.size() <= outputLimit && readable(file, until)) {
    const ssize_t count = read(file, block.data(), block.size());
    if (count == 0) return text;
    if (count > 0) text.append(block.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR && errno != EAGAIN) return std::nullopt;
  }
  return std::nullopt;
}

// A program that has closed its output is about to end; one that is not is no better than silent.
bool endsBy(GSubprocess* process, Clock::time_point until) {
  while (g_subprocess_get_identifier(process) != nullptr) {
    if (Clock::now() >= until) return false;
    g_usleep(200);
  }
  return true;
}

}  // namespace

std::optional<std::string> runHelperProgram(const std::vector<std::string>& arguments,
                                            Seconds deadline) {
  std::vector<const char*> words;
  words.reserve(arguments.size() + 1);
  for (const auto& argument : arguments) words.push_back(argument.c_str());
  words.push_back(nullptr);
  const auto process = GPtr<GSubprocess>::adopt(
      g_subprocess_newv(words.data(),
                        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                                      G_SUBPROCESS_FLAGS_STDERR_SILENCE),
                        nullptr));
  if (!process) return std::nullopt;

  const auto until = Clock::now() + std::chrono::duration_cast<Clock::duration>(deadline);
  auto* output = g_subprocess_get_stdout_pipe(process.get());
  auto text = readAll(g_unix_input_stream_get_fd(G_UNIX_INPUT_STREAM(output)), until);
  if (!text || !endsBy(process.get(), until)) g_subprocess_force_exit(process.get());
  g_subprocess_wait(process.get(), nullptr, nullptr);
  const bool succeeded = g_subprocess_get_if_exited(process.get()) != FALSE &&
                         g_subprocess_get_exit_status(process.get()) == 0;
  return succeeded ? text : std::nullopt;
}

}  // namespace tavo::gtk
