#include "Support/HostileServer.h"

#include <stdexcept>
#include <utility>

#include "Support/HostileConnection.h"

namespace tavo::test {

namespace {

std::uint16_t listenOnLoopback(GSocketListener* listener) {
  const auto loopback =
      gtk::GPtr<GInetAddress>::adopt(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
  const auto anyPort =
      gtk::GPtr<GSocketAddress>::adopt(g_inet_socket_address_new(loopback.get(), 0));
  GSocketAddress* taken = nullptr;
  if (!g_socket_listener_add_address(listener, anyPort.get(), G_SOCKET_TYPE_STREAM,
                                     G_SOCKET_PROTOCOL_TCP, nullptr, &taken, nullptr)) {
    throw std::runtime_error{"The hostile server cannot listen on the loopback interface."};
  }
  const auto address = gtk::GPtr<GSocketAddress>::adopt(taken);
  return g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(taken));
}

}  // namespace

HostileServer::HostileServer()
    : listener_{gtk::GPtr<GSocketListener>::adopt(g_socket_listener_new())},
      stop_{gtk::GPtr<GCancellable>::adopt(g_cancellable_new())},
      port_{listenOnLoopback(listener_.get())},
      acceptor_{[this] { acceptConnections(); }} {}

HostileServer::~HostileServer() {
  g_cancellable_cancel(stop_.get());
  acceptor_.join();
  for (auto& connection : connections_) {
    connection.join();
  }
}

void HostileServer::on(const std::string& path, Behaviour behaviour) {
  on(path, std::vector<Behaviour>{std::move(behaviour)});
}

void HostileServer::on(const std::string& path, std::vector<Behaviour> behaviours) {
  const std::lock_guard lock{mutex_};
  behaviours_[path] = std::move(behaviours);
}

std::string HostileServer::url(const std::string& path, const std::string& host) const {
  return "http://" + host + ':' + std::to_string(port_) + path;
}

std::vector<std::string> HostileServer::requests() const {
  const std::lock_guard lock{mutex_};
  return requests_;
}

bool HostileServer::waitForRequests(std::size_t count, std::chrono::seconds deadline) const {
  std::unique_lock lock{mutex_};
  return arrived_.wait_for(lock, deadline, [&] { return requests_.size() >= count; });
}

void HostileServer::acceptConnections() {
  while (auto* accepted =
             g_socket_listener_accept(listener_.get(), nullptr, stop_.get(), nullptr)) {
    connections_.emplace_back([this, accepted] {
      const auto connection = gtk::GPtr<GSocketConnection>::adopt(accepted);
      serve(connection.get());
    });
  }
}

void HostileServer::serve(GSocketConnection* socket) {
  HostileConnection connection{socket, stop_.get()};
  const auto request = connection.readRequest();
  if (!request.empty()) {
    keep(request);
    connection.behave(behaviourFor(pathOf(request)), request);
  }
}

Behaviour HostileServer::behaviourFor(const std::string& path) {
  const std::lock_guard lock{mutex_};
  auto& turns = behaviours_[path];
  if (turns.empty()) {
    return PlainAnswer{.status = 404, .contentType = "text/plain"};
  }
  Behaviour behaviour = turns.front();
  if (turns.size() > 1) {
    turns.erase(turns.begin());
  }
  return behaviour;
}

void HostileServer::keep(const std::string& request) {
  const std::lock_guard lock{mutex_};
  requests_.push_back(request);
  arrived_.notify_all();
}

}  // namespace tavo::test
