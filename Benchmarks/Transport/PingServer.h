#pragma once

#include <sys/types.h>

#include <string>

namespace tavo::benchmarks {

// A tracking server in a process of its own, on every address of the loopback network. Answers 200
// with one byte, as a pixel: at once, or after 20 ms below "/slow/".
class PingServer {
 public:
  // Before any other thread exists.
  PingServer();
  ~PingServer();
  PingServer(const PingServer&) = delete;
  PingServer& operator=(const PingServer&) = delete;

  // "http://127.0.0.<host>:port".
  [[nodiscard]] std::string address(int host) const;
  [[nodiscard]] int port() const { return port_; }

 private:
  pid_t process_ = 0;
  int port_ = 0;
};

}  // namespace tavo::benchmarks
