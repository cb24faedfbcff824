#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Gtk/GPtr.h"
#include "Support/Behaviour.h"

namespace tavo::test {

// A raw HTTP server on the loopback interface that misbehaves as told. It works on threads of its
// own, so a test may block or run its main loop as it likes. All operations may be called on any
// thread.
//
//   HostileServer server;
//   server.on("/ad", CloseInBody{});
//   load(server.url("/ad"));
//
// A path without behaviour answers 404. The destructor hangs up on everyone and returns when the
// last thread is gone.
class HostileServer {
 public:
  HostileServer();  // throws std::runtime_error when it cannot listen
  ~HostileServer();
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  // What the path does from now on; a query does not matter for finding it.
  void on(const std::string& path, Behaviour behaviour);

  // The same with one behaviour for each request in turn; the last one stays. At least one.
  void on(const std::string& path, std::vector<Behaviour> behaviours);

  // "http://<host><path>" with this server's port. "localhost" reaches the same server under
  // another name, which is another host for cookies and redirects.
  [[nodiscard]] std::string url(const std::string& path,
                                const std::string& host = "127.0.0.1") const;

  [[nodiscard]] std::uint16_t port() const { return port_; }

  // The request line and headers of each request so far, in the order of their arrival.
  [[nodiscard]] std::vector<std::string> requests() const;

  // Waits until so many requests have come in all. False when the deadline passes first.
  [[nodiscard]] bool waitForRequests(std::size_t count,
                                     std::chrono::seconds deadline = std::chrono::seconds{
                                         10}) const;

 private:
  void acceptConnections();
  void serve(GSocketConnection* connection);
  Behaviour behaviourFor(const std::string& path);
  void keep(const std::string& request);

  gtk::GPtr<GSocketListener> listener_;
  gtk::GPtr<GCancellable> stop_;
  std::uint16_t port_ = 0;

  mutable std::mutex mutex_;
  mutable std::condition_variable arrived_;
  std::map<std::string, std::vector<Behaviour>> behaviours_;  // the first of each is the next
  std::vector<std::string> requests_;

  std::vector<std::thread> connections_;  // touched by the accepting thread and the destructor
  std::thread acceptor_;
};

}  // namespace tavo::test
