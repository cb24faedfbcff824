#include "Gtk/Web/SocketBytes.h"

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

namespace tavo::gtk {
namespace {

using Received = std::map<std::uint64_t, std::uint64_t>;

std::set<std::uint64_t> socketsOf(int process) {
  constexpr std::string_view prefix{"socket:["};
  std::set<std::uint64_t> found;
  std::error_code failure;
  std::filesystem::directory_iterator file{"/proc/" + std::to_string(process) + "/fd", failure};
  for (; !failure && file != std::filesystem::directory_iterator{}; file.increment(failure)) {
    std::error_code gone;
    const std::string target = std::filesystem::read_symlink(file->path(), gone);
    if (!target.starts_with(prefix)) continue;
    std::uint64_t number = 0;
    std::from_chars(target.data() + prefix.size(), target.data() + target.size(), number);
    found.insert(number);
  }
  return found;
}

// A question to the system about its sockets, and the answers to it.
class SocketQuestion {
 public:
  SocketQuestion() : file_{socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG)} {}
  ~SocketQuestion() {
    if (file_ >= 0) close(file_);
  }
  SocketQuestion(const SocketQuestion&) = delete;
  SocketQuestion& operator=(const SocketQuestion&) = delete;

  // Adds those of `wanted`; false when the system does not answer.
  bool ask(int family, const std::set<std::uint64_t>& wanted, Received& received) {
    struct {
      nlmsghdr header;
      inet_diag_req_v2 request;
    } question{};
    question.header.nlmsg_len = sizeof(question);
    question.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    question.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    question.request.sdiag_family = static_cast<std::uint8_t>(family);
    question.request.sdiag_protocol = IPPROTO_TCP;
    question.request.idiag_ext = 1U << (INET_DIAG_INFO - 1U);
    question.request.idiag_states = ~0U;
    if (file_ < 0 || send(file_, &question, sizeof(question), 0) < 0) return false;
    for (;;) {
      const auto size = recv(file_, buffer_.data(), buffer_.size(), 0);
      if (size <= 0) return false;
      const Turn turn = read(static_cast<std::size_t>(size), wanted, received);
      if (turn != Turn::more) return turn == Turn::done;
    }
  }

 private:
  enum class Turn { more, done, refused };

  Turn read(std::size_t size, const std::set<std::uint64_t>& wanted, Received& received) const {
    std::size_t end = 0;
    for (std::size_t at = 0; at + sizeof(nlmsghdr) <= size; at = end) {
      const auto* header = reinterpret_cast<const nlmsghdr*>(buffer_.data() + at);
      if (header->nlmsg_len < sizeof(nlmsghdr) || header->nlmsg_len > size - at) break;
      end = at + NLMSG_ALIGN(header->nlmsg_len);
      if (header->nlmsg_type == NLMSG_DONE) return Turn::done;
      if (header->nlmsg_type == NLMSG_ERROR) return Turn::refused;
      const auto* socket = static_cast<const inet_diag_msg*>(NLMSG_DATA(header));
      if (wanted.contains(socket->idiag_inode)) {
        received[socket->idiag_inode] = bytesOf(*header, *socket);
      }
    }
    return Turn::more;
  }

  static std::uint64_t bytesOf(const nlmsghdr& header, const inet_diag_msg& socket) {
    auto left = static_cast<int>(header.nlmsg_len - NLMSG_LENGTH(sizeof(inet_diag_msg)));
    const auto* fact = reinterpret_cast<const rtattr*>(&socket + 1);
    for (; RTA_OK(fact, left); fact = RTA_NEXT(fact, left)) {
      if (fact->rta_type != INET_DIAG_INFO) continue;
      tcp_info info{};  // what an older system does not tell stays 0
      std::memcpy(&info, RTA_DATA(fact), std::min<std::size_t>(sizeof(info), RTA_PAYLOAD(fact)));
      return info.tcpi_bytes_received;
    }
    return 0;
  }

  int file_;
  alignas(nlmsghdr) std::array<std::byte, 32'768> buffer_{};
};

}  // namespace

std::optional<Received> bytesReceivedBy(int process) {
  const auto wanted = socketsOf(process);
  Received received;
  for (const int family : {AF_INET, AF_INET6}) {
    SocketQuestion question;
    if (!question.ask(family, wanted, received)) return std::nullopt;
  }
  return received;
}

}  // namespace tavo::gtk
