#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "OnlineRequest/PingStreams.h"
#include "OnlineRequest/PingWindow.h"
#include "OnlineRequest/QueuedPing.h"
#include "Runtime/Environment.h"
#include "Services/HttpClient.h"
#include "Services/RunLoop.h"

namespace tavo {

// Lets tracking pings out a few at a time. A transport that is handed thousands at once becomes
// slower with each, and stops the host's loop meanwhile; here each server (scheme, host and port)
// has a window (PingWindow), servers take turns, and Limits::pingConnectionsPerHost and
// pingConnections are never exceeded. Servers that are busy at the same time share the latter
// evenly: one that took more would make the transport close and open connections all the time.
// Where a server's requests share one connection, neither bound is met by them, and the window
// follows what the server grants (PingStreams); a few leave in each turn of the loop.
//
// The next ping leaves in the turn that reads an answer. What came of a ping is told afterwards, in
// a burst for several pings at a time: each change of threads costs as much as half a ping. Main
// thread only.
class PingQueue {
 public:
  explicit PingQueue(const Environment& environment);
  // Pings that wait are lost, those on their way arrive without anybody hearing of it. Waits for
  // pings that are being told.
  ~PingQueue();
  PingQueue(const PingQueue&) = delete;
  PingQueue& operator=(const PingQueue&) = delete;

  // Sends the ping at once or when its turn comes. No more than Limits::queuedPingsPerHost wait for
  // one server, so one that is silent takes no room from the others, and no more than
  // Limits::queuedPings in all: then the longest queue loses its newest ping.
  void add(std::shared_ptr<QueuedPing> ping);

  [[nodiscard]] std::size_t waiting() const { return waiting_; }
  [[nodiscard]] int underWay() const { return underWay_; }

 private:
  struct Server {
    std::deque<std::shared_ptr<QueuedPing>> waiting;
    int underWay = 0;
    bool hasTurn = false;
    PingWindow window;
    PingStreams streams;
    bool sharesConnection = false;
    [[nodiscard]] bool isBusy() const { return underWay > 0 || !waiting.empty(); }
  };
  using Servers = std::map<std::string, Server, std::less<>>;

  // What a ping was sent over.
  enum class Road { ownConnection, sharedConnection };

  struct Sent {
    std::shared_ptr<QueuedPing> ping;
    Server* server;  // stays while one of its pings is under way
    Road road;
    Seconds at;
  };
  struct Outcome {
    std::shared_ptr<QueuedPing> ping;
    HttpResult result;
    Seconds took;
  };
  using Outcomes = std::vector<Outcome>;
  class Gate;

  // Whether a ping for `server` may be added, for which another server may have to make room.
  bool makeRoomFor(const Server& server);
  void giveTurn(Server& server);
  // How many pings may be on their way to the server now.
  [[nodiscard]] int windowOf(const Server& server) const;
  // Starts what the windows allow.
  void pump();
  // Whether the server's next ping has to wait for a connection or for the loop's next turn.
  [[nodiscard]] bool hasToWait(const Server& server) const;
  void count(Server& server, Road road, int pings);
  // Lets the server's first ping out, or finds that it is not to leave any more.
  void start(Server& server);
  // Notes that one has left over a shared connection: after so many the loop has a turn.
  void countStart();
  void arrived(const Sent& sent, const HttpResult& result);
  static void note(Server& server, const Sent& sent, const HttpResult& result, Seconds took);
  void forgetIdleServers();

  // Tells what has come of pings, soon or at once.
  void tellSoon();
  void tell();
  static void settle(const Gate& gate, const Outcomes& outcomes);

  const Limits& limits_;  // the environment's, which owns the queue
  const std::shared_ptr<RunLoop> runLoop_;
  const std::shared_ptr<HttpClient> http_;
  std::shared_ptr<Gate> gate_;
  Servers servers_;
  int busyServers_ = 0;
  std::deque<Server*> turns_;
  std::size_t waiting_ = 0;
  int underWay_ = 0;
  int connections_ = 0;  // those under way that have one of their own
  int startsLeft_;       // over shared connections, until the loop has had a turn
  Outcomes outcomes_;    // not told yet
  Timer telling_;
};

}  // namespace tavo
