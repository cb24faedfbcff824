#include "AdServer/LocalPort.h"

#include <stdexcept>

namespace tavo::adserver {

// Escapes stay in the path: the record shows them, and the router refuses those that are unfit.
gtk::GPtr<SoupServer> listeningServer(std::uint16_t port) {
  auto server = gtk::GPtr<SoupServer>::adopt(
      soup_server_new("raw-paths", TRUE, "server-header", "AdServer", nullptr));
  gtk::GFailure failure;
  if (!soup_server_listen_local(server.get(), port, SOUP_SERVER_LISTEN_IPV4_ONLY, failure.out())) {
    const auto name = "port " + std::to_string(port);
    throw std::runtime_error{failure.is(G_IO_ERROR, G_IO_ERROR_ADDRESS_IN_USE)
                                 ? "Another program listens on " + name +
                                       ". Choose another with --port; 0 takes any free one."
                                 : "Cannot listen on " + name + ": " + failure.message() + "."};
  }
  return server;
}

std::string baseUrlOf(SoupServer* server) {
  GSList* uris = soup_server_get_uris(server);
  const auto port = g_uri_get_port(static_cast<GUri*>(uris->data));
  g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
  return "http://127.0.0.1:" + std::to_string(port);
}

}  // namespace tavo::adserver
