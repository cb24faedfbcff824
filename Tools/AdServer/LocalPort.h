#pragma once

#include <libsoup/soup.h>

#include <cstdint>
#include <string>

#include "Gtk/GPtr.h"

namespace tavo::adserver {

// A server on the loopback interface, on a port or, with 0, on any free one. Throws
// std::runtime_error, with what to do, when it cannot listen.
[[nodiscard]] gtk::GPtr<SoupServer> listeningServer(std::uint16_t port);

// "http://127.0.0.1:<port>", without a slash at the end.
[[nodiscard]] std::string baseUrlOf(SoupServer* server);

}  // namespace tavo::adserver
