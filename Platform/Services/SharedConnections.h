#pragma once

#include <tavo/Url.h>

namespace tavo {

// What an HttpClient may say besides, by implementing this too: that one connection to a server
// carries many requests at a time, as HTTP/2 does. Who does not say so is taken for a client that
// needs a connection for each.
class SharedConnections {
 public:
  virtual ~SharedConnections() = default;

  // Whether the server of `url` answered its last tracking request over such a connection. The
  // client keeps to the number of requests that the server grants at a time, and lets the others
  // wait. Main thread.
  [[nodiscard]] virtual bool sharesConnection(const Url& url) const = 0;
};

}  // namespace tavo
