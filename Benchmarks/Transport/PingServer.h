#pragma once

#include <sys/types.h>

#include <string>

namespace tavo::benchmarks {

// A tracking server in a process of its own, on every address of the loopback network. Answers
// 200 without a body: at once, or after 20 ms below "/slow/". "/sockets" tells how many client
// sockets the busiest host has seen since it was asked last.
class PingServer {
 public:
  // Before any other thread exists.
  PingServer();
  ~PingServer();
  PingServer(const PingServer&) = delete;
  PingServer& operator=(const PingServer&) = delete;

  // "http://127.0.0.<host>:port".
  [[nodiscard]] std::string address(int host) const;

 private:
  pid_t process_ = 0;
  int port_ = 0;
};

}  // namespace tavo::benchmarks
