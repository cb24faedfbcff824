#include "PingServer.h"

#include <glib-unix.h>
#include <libsoup/soup.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace tavo::benchmarks {

namespace {

constexpr long slowAnswerNanoseconds = 20'000'000;

using Sockets = std::map<std::string, std::set<std::string>>;

void answerSockets(SoupServerMessage* message, Sockets& sockets) {
  std::size_t most = 0;
  for (const auto& [host, clients] : sockets) most = std::max(most, clients.size());
  sockets.clear();
  const std::string text = std::to_string(most);
  soup_server_message_set_response(message, "text/plain", SOUP_MEMORY_COPY, text.data(),
                                   text.size());
}

gboolean answerNow(gint timer, GIOCondition /*condition*/, gpointer message) {
  close(timer);
  soup_server_message_unpause(static_cast<SoupServerMessage*>(message));
  g_object_unref(message);
  return G_SOURCE_REMOVE;
}

// The loop's own timers may be a millisecond late, a twentieth of what is measured here.
void answerSlowly(SoupServerMessage* message) {
  soup_server_message_pause(message);
  const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
  const itimerspec once{.it_interval = {},
                        .it_value = {.tv_sec = 0, .tv_nsec = slowAnswerNanoseconds}};
  timerfd_settime(timer, 0, &once, nullptr);
  g_unix_fd_add(timer, G_IO_IN, &answerNow, g_object_ref(message));
}

std::string nameOf(GSocketAddress* address) {
  auto* inet = G_INET_SOCKET_ADDRESS(address);
  gchar* host = g_inet_address_to_string(g_inet_socket_address_get_address(inet));
  const std::string name = host;
  g_free(host);
  return name + ":" + std::to_string(g_inet_socket_address_get_port(inet));
}

void handle(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer data) {
  auto& sockets = *static_cast<Sockets*>(data);
  soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
  if (g_str_equal(path, "/sockets")) return answerSockets(message, sockets);
  sockets[nameOf(soup_server_message_get_local_address(message))].insert(
      nameOf(soup_server_message_get_remote_address(message)));
  if (g_str_has_prefix(path, "/slow/")) answerSlowly(message);
}

// Tells its port through `out`, then serves until the parent ends.
[[noreturn]] void serve(int out) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  Sockets sockets;
  SoupServer* server = soup_server_new(nullptr, nullptr);
  soup_server_add_handler(server, nullptr, &handle, &sockets, nullptr);
  int port = 0;
  if (soup_server_listen_all(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr) != FALSE) {
    GSList* uris = soup_server_get_uris(server);
    port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
  }
  if (write(out, &port, sizeof port) != sizeof port) std::_Exit(1);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
  std::_Exit(0);
}

}  // namespace

PingServer::PingServer() {
  int ends[2] = {};
  if (pipe(ends) != 0) std::abort();
  process_ = fork();
  if (process_ == 0) serve(ends[1]);
  if (read(ends[0], &port_, sizeof port_) != sizeof port_ || port_ == 0) std::abort();
  close(ends[0]);
  close(ends[1]);
}

PingServer::~PingServer() {
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

std::string PingServer::address(int host) const {
  return "http://127.0.0." + std::to_string(host) + ":" + std::to_string(port_);
}

}  // namespace tavo::benchmarks
