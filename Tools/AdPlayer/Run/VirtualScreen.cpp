#include "AdPlayer/Run/VirtualScreen.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace tavo::adplayer {

namespace {

constexpr int startPatience = 20'000;  // milliseconds

[[noreturn]] void becomeScreen(int numberPipe) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setpgid(0, 0);  // the terminal's interrupt is for the runner
  const int nothing = ::open("/dev/null", O_RDWR);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(nothing, STDERR_FILENO);
  const std::string number = std::to_string(numberPipe);
  execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "1280x1280x24", "-nolisten",
         "tcp", "-noreset", nullptr);
  _exit(127);
}

std::string readNumber(int pipe) {
  std::string number;
  for (;;) {
    pollfd waiting{pipe, POLLIN, 0};
    char letter = 0;
    if (poll(&waiting, 1, startPatience) <= 0 || ::read(pipe, &letter, 1) != 1) return {};
    if (letter == '\n') return number;
    number += letter;
  }
}

}  // namespace

VirtualScreen::VirtualScreen() {
  std::array<int, 2> pipe{};
  if (::pipe(pipe.data()) != 0) throw std::runtime_error("No pipe could be made.");
  fcntl(pipe[0], F_SETFD, FD_CLOEXEC);
  process_ = fork();
  if (process_ == 0) becomeScreen(pipe[1]);
  ::close(pipe[1]);
  const std::string number = process_ > 0 ? readNumber(pipe[0]) : std::string{};
  ::close(pipe[0]);
  if (number.empty()) {
    throw std::runtime_error(
        "No virtual screen could be started; install Xvfb (Debian: apt install xvfb).");
  }
  display_ = ":" + number;
}

void VirtualScreen::use(const std::string& display) {
  unsetenv("WAYLAND_DISPLAY");
  setenv("DISPLAY", display.c_str(), 1);
  setenv("GDK_BACKEND", "x11", 1);
  setenv("GSK_RENDERER", "cairo", 1);
  setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
  setenv("GTK_A11Y", "none", 1);
}

VirtualScreen::~VirtualScreen() {
  if (process_ <= 0) return;
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

}  // namespace tavo::adplayer
