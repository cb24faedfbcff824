#pragma once

#include <libsoup/soup.h>

namespace tavo::adserver {

// Closes connections that their clients close while they wait for the next request: libsoup before
// 3.4 keeps the server's end open for good, and a server that runs for days runs out of them.
void closeWithItsClients(SoupServer* server);

}  // namespace tavo::adserver
