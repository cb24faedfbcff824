#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "OnlineRequest/PingStreams.h"
#include "OnlineRequest/PingWindow.h"
#include "Runtime/Environment.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"
#include "Services/SharedConnections.h"

namespace tavo {

// One tracking ping on its way through the queue.
struct QueuedPing {
  Url url;
  // Makes the request, when the ping's turn has come; none when it is not to leave any more. Main
  // thread.
  std::function<std::optional<HttpRequest>()> prepare;
  // The ping lost its place, or never got one: too many are waiting. Main thread.
  std::function<void()> dropped;
  // The exchange is over. Background thread; not called once the queue is gone.
  HttpCompletion answered;
  // The same a moment later, with the time it took. Main thread; not called once the queue is gone.
  std::function<void(const HttpResult&, Seconds)> settled;
};

// Lets tracking pings out a few at a time. A transport that is handed thousands at once becomes
// slower with each, and stops the host's loop meanwhile; here each host has a window (PingWindow),
// hosts take turns, and Limits::pingConnectionsPerHost and pingConnections are never exceeded.
// Hosts that are busy at the same time share the latter evenly: a host that took more would make
// the transport close and open connections all the time. Where a server's requests share one
// connection, neither bound is met by them, and the window follows what the server grants
// (PingStreams). Main thread only.
class PingQueue {
 public:
  explicit PingQueue(const Environment& environment);
  // Pings that wait are lost, those on their way arrive without anybody hearing of it. Waits for
  // completions that are running.
  ~PingQueue();
  PingQueue(const PingQueue&) = delete;
  PingQueue& operator=(const PingQueue&) = delete;

  // Sends the ping at once or when its turn comes. No more than Limits::queuedPingsPerHost wait for
  // one host, so a host that is silent takes no room from the others, and no more than
  // Limits::queuedPings in all: then the longest queue loses its newest ping.
  void add(QueuedPing ping);

  [[nodiscard]] std::size_t waiting() const { return waiting_; }
  [[nodiscard]] int underWay() const { return underWay_; }

 private:
  struct Host {
    std::deque<QueuedPing> waiting;
    int underWay = 0;
    bool hasTurn = false;
    PingWindow window;
    PingStreams streams;
    bool sharesConnection = false;
    [[nodiscard]] bool isBusy() const { return underWay > 0 || !waiting.empty(); }
  };
  using Hosts = std::map<std::string, Host, std::less<>>;
  class Gate;

  // What a ping was sent over.
  enum class Road { ownConnection, sharedConnection };

  // Whether a ping for `host` may be added, for which another host may have to make room.
  bool makeRoomFor(const Host& host);
  void giveTurn(Host& host);
  // How many pings may be on their way to the host now.
  [[nodiscard]] int windowOf(const Host& host) const;
  // Starts what the windows allow.
  void pump();
  void count(Host& host, Road road, int pings);
  // Lets the host's first ping out, or finds that it is not to leave any more.
  void start(const std::string& name, Host& host);
  void finished(const std::string& name, const QueuedPing& ping, const HttpResult& result,
                Seconds took, Road road);
  void note(Host& host, const QueuedPing& ping, Seconds took, Road road) const;
  void forgetIdleHosts();

  const Limits& limits_;  // the environment's, which owns the queue
  const std::shared_ptr<RunLoop> runLoop_;
  const std::shared_ptr<HttpClient> http_;
  const SharedConnections* const sharing_;  // the same, or null
  std::shared_ptr<Gate> gate_;
  Hosts hosts_;
  int busyHosts_ = 0;
  std::deque<Hosts::value_type*> turns_;
  std::size_t waiting_ = 0;
  int underWay_ = 0;
  int connections_ = 0;  // those under way that have one of their own
};

}  // namespace tavo
