#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>

namespace tavo::benchmarks {

// Answers requests on the connections of one listening socket, in one thread and as fast as this
// machine can: what is measured is the client. It understands just what its clients send, requests
// without a body.
class PingAnswers {
 public:
  explicit PingAnswers(int listener);
  PingAnswers(const PingAnswers&) = delete;
  PingAnswers& operator=(const PingAnswers&) = delete;

  [[noreturn]] void run();

 private:
  struct Connection {
    std::uint64_t number = 0;
    std::string received;
  };
  // An answer on its way, to a connection that may be gone by then.
  struct Late {
    std::int64_t due;  // nanoseconds of the monotonic clock
    int socket;
    std::uint64_t number;
  };

  void watch(int file) const;
  void acceptAll();
  void read(int socket);
  void answer(int socket, const Connection& connection, std::string_view path);
  void answerLate();
  void armTimer() const;
  void drop(int socket);

  const int listener_;
  const int epoll_;
  const int timer_;
  std::uint64_t newest_ = 0;
  std::map<int, Connection> connections_;
  std::deque<Late> late_;  // all equally late, so in order
};

}  // namespace tavo::benchmarks
