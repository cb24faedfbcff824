#include "AdServer/IdleConnections.h"

#include <sys/socket.h>

#include <cerrno>

#include "Gtk/GPtr.h"

namespace tavo::adserver {

namespace {

// Bytes of the next request bring another watch when that is answered.
gboolean closeAtEnd(GSocket* socket, GIOCondition /*condition*/, gpointer /*data*/) {
  char next = 0;
  if (g_socket_is_closed(socket)) return G_SOURCE_REMOVE;
  // A client that has left bytes unread resets the connection instead of closing it.
  const auto size = recv(g_socket_get_fd(socket), &next, 1, MSG_PEEK | MSG_DONTWAIT);
  if (size == 0 || (size < 0 && errno == ECONNRESET)) g_socket_close(socket, nullptr);
  return G_SOURCE_REMOVE;
}

void watch(SoupServerMessage* message) {
  GSocket* const socket = soup_server_message_get_socket(message);
  if (socket == nullptr || g_socket_is_closed(socket)) return;
  const gtk::GSourcePtr end{g_socket_create_source(socket, G_IO_IN, nullptr)};
  g_source_set_callback(end.get(), G_SOURCE_FUNC(&closeAtEnd), nullptr, nullptr);
  g_source_attach(end.get(), g_main_context_get_thread_default());
}

}  // namespace

void closeWithItsClients(SoupServer* server) {
  // The library counts a request that was answered with a server error as aborted.
  for (const char* end : {"request-finished", "request-aborted"}) {
    g_signal_connect(
        server, end,
        G_CALLBACK(+[](SoupServer*, SoupServerMessage* message, gpointer) { watch(message); }),
        nullptr);
  }
}

}  // namespace tavo::adserver
