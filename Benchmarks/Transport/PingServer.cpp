#include "PingServer.h"

#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "PingAnswers.h"

namespace tavo::benchmarks {

namespace {

// As many may connect at once as a proxy opens; who finds no room tries again a second later.
constexpr int backlog = 1024;

// A listening socket on every address of this machine, with its port.
int listenAnywhere(int& port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, generic, size) != 0 || listen(listener, backlog) != 0 ||
      getsockname(listener, generic, &size) != 0) {
    std::abort();
  }
  port = ntohs(address.sin_port);
  return listener;
}

}  // namespace

PingServer::PingServer() {
  const int listener = listenAnywhere(port_);
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    PingAnswers{listener}.run();
  }
  close(listener);
}

PingServer::~PingServer() {
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

std::string PingServer::address(int host) const {
  return "http://127.0.0." + std::to_string(host) + ":" + std::to_string(port_);
}

}  // namespace tavo::benchmarks
