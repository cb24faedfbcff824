#include "Gtk/Web/NetworkMeter.h"

#include <algorithm>

#include "Gtk/Web/NetworkProcess.h"
#include "Gtk/Web/SocketBytes.h"

namespace tavo::gtk {
namespace {
constexpr Seconds period{1};
}  // namespace

void NetworkMeter::explain(std::uint64_t bytes) {
  if (timer_.isValid()) explained_ += bytes;
}

void NetworkMeter::follow(const std::shared_ptr<Told>& told) {
  followers_.push_back(told);
  if (timer_.isValid()) return;
  explained_ = 0;
  static_cast<void>(arrived());  // what was there before is nobody's
  timer_ = runLoop_->every(period, [this] { look(); });
}

void NetworkMeter::look() {
  std::erase_if(followers_, [](const auto& each) { return each.expired(); });
  if (followers_.empty()) return timer_.invalidate();
  const std::uint64_t bytes = arrived();
  const std::uint64_t known = std::min(bytes, explained_);
  explained_ -= known;
  if (bytes == known || pauses_()) return;
  const auto followers = followers_;  // whoever has had enough may end others
  for (const auto& follower : followers) {
    if (const auto told = follower.lock()) (*told)(bytes - known);
  }
}

std::uint64_t NetworkMeter::arrived() {
  auto now = bytesReceivedBy(process_);
  if (!now || now->empty()) {
    process_ = idOfNetworkProcess();
    now = bytesReceivedBy(process_);
  }
  if (!now) return 0;
  std::uint64_t sum = 0;
  for (const auto& [socket, bytes] : *now) {
    const auto before = sockets_.find(socket);
    sum += bytes - (before == sockets_.end() ? 0 : std::min(before->second, bytes));
  }
  sockets_ = std::move(*now);
  return sum;
}

}  // namespace tavo::gtk
