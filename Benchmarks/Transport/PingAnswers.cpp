#include "PingAnswers.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>

namespace tavo::benchmarks {

namespace {

constexpr std::int64_t slowAnswerNanoseconds = 20'000'000;
constexpr std::int64_t second = 1'000'000'000;

std::int64_t nanoseconds() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * second + time.tv_nsec;
}

// Whoever has gone away needs no answer, and no answer here fills a socket's buffer.
void answerNow(int socket) {
  constexpr std::string_view text{"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx"};
  static_cast<void>(send(socket, text.data(), text.size(), MSG_NOSIGNAL));
}

}  // namespace

PingAnswers::PingAnswers(int listener)
    : listener_{listener},
      epoll_{epoll_create1(EPOLL_CLOEXEC)},
      timer_{timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)} {
  watch(listener_);
  watch(timer_);
}

void PingAnswers::watch(int file) const {
  epoll_event event{.events = EPOLLIN, .data = {.fd = file}};
  epoll_ctl(epoll_, EPOLL_CTL_ADD, file, &event);
}

void PingAnswers::run() {
  std::array<epoll_event, 64> events{};
  for (;;) {
    const int count = epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), -1);
    for (int i = 0; i < count; ++i) {
      const int file = events[static_cast<std::size_t>(i)].data.fd;
      if (file == listener_) {
        acceptAll();
      } else if (file == timer_) {
        answerLate();
      } else {
        read(file);
      }
    }
  }
}

void PingAnswers::acceptAll() {
  for (;;) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0) return;
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    connections_[socket] = {.number = ++newest_, .received = {}};
    watch(socket);
  }
}

void PingAnswers::read(int socket) {
  const auto found = connections_.find(socket);
  if (found == connections_.end()) return;
  auto& connection = found->second;
  std::array<char, 8192> bytes;
  const ssize_t count = recv(socket, bytes.data(), bytes.size(), 0);
  // What was told of an earlier connection with the same number is nothing new for this one.
  if (count < 0 && errno == EAGAIN) return;
  if (count <= 0) return drop(socket);
  connection.received.append(bytes.data(), static_cast<std::size_t>(count));
  constexpr std::string_view end{"\r\n\r\n"};
  for (;;) {
    const auto size = connection.received.find(end);
    if (size == std::string::npos) return;
    const std::string_view line{connection.received.data(), connection.received.find("\r\n")};
    const auto start = std::min(line.find(' ') + 1, line.size());
    answer(socket, connection, line.substr(start, line.rfind(' ') - start));
    connection.received.erase(0, size + end.size());
  }
}

void PingAnswers::answer(int socket, const Connection& connection, std::string_view path) {
  if (!path.starts_with("/slow/")) return answerNow(socket);
  late_.push_back({nanoseconds() + slowAnswerNanoseconds, socket, connection.number});
  if (late_.size() == 1) armTimer();
}

void PingAnswers::answerLate() {
  std::uint64_t times = 0;
  static_cast<void>(::read(timer_, &times, sizeof times));
  for (; !late_.empty() && late_.front().due <= nanoseconds(); late_.pop_front()) {
    const auto found = connections_.find(late_.front().socket);
    if (found == connections_.end() || found->second.number != late_.front().number) continue;
    answerNow(late_.front().socket);
  }
  if (!late_.empty()) armTimer();
}

void PingAnswers::armTimer() const {
  const auto due = late_.front().due;
  const itimerspec once{.it_interval = {},
                        .it_value = {.tv_sec = due / second, .tv_nsec = due % second}};
  timerfd_settime(timer_, TFD_TIMER_ABSTIME, &once, nullptr);
}

void PingAnswers::drop(int socket) {
  connections_.erase(socket);
  close(socket);
}

}  // namespace tavo::benchmarks
