#pragma once

#include <glib-object.h>

#include <vector>

namespace tavo::gtk {

// The signal handlers that one object has installed; they end with it.
class SignalConnections {
 public:
  SignalConnections() = default;
  ~SignalConnections() { disconnect(); }
  SignalConnections(const SignalConnections&) = delete;
  SignalConnections& operator=(const SignalConnections&) = delete;

  // `handler` has the signal's own signature, with `data` as its last parameter. The instance must
  // outlive the connection.
  template <typename Handler>
  void connect(gpointer instance, const char* signal, Handler* handler, gpointer data) {
    connections_.push_back(
        {instance, g_signal_connect(instance, signal, reinterpret_cast<GCallback>(handler), data)});
  }

  void disconnect() {
    for (const auto& connection : connections_) {
      g_signal_handler_disconnect(connection.instance, connection.handler);
    }
    connections_.clear();
  }

 private:
  struct Connection {
    gpointer instance;
    gulong handler;
  };
  std::vector<Connection> connections_;
};

}  // namespace tavo::gtk
