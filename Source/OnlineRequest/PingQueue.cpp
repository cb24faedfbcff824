#include "OnlineRequest/PingQueue.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <utility>

#include "Values/Text.h"

namespace tavo {

namespace {

// Round trips are remembered for so many servers.
constexpr std::size_t rememberedServers = 64;

// Hundreds may be answered, and leave, over one connection in one turn of the loop: with a tenth of
// a millisecond for each the host would notice.
constexpr int startsPerTurn = 8;

// How long what came of a ping may wait for others in a burst.
constexpr Seconds burstPatience{0.005};

// Scheme, host and port: what has connections of its own.
std::string serverOf(const Url& url) {
  const std::string_view text = url.text();
  const std::string_view host = url.host();
  std::string server = lowerCased(url.scheme());
  if (host.empty()) return server;
  const auto end = static_cast<std::size_t>(host.data() - text.data()) + host.size();
  const auto pathStart = static_cast<std::size_t>(url.path().data() - text.data());
  auto port = text.substr(end, pathStart - end);
  port.remove_prefix(std::min(port.find(':'), port.size()));
  const bool isUsual = port == ":" || port == (server == "https" ? ":443" : ":80");
  server.append("://").append(lowerCased(host));
  if (!isUsual) server.append(port);
  return server;
}

}  // namespace

// What is under way holds of the queue, which may be gone by then.
class PingQueue::Gate {
 public:
  explicit Gate(PingQueue& queue) : queue_{&queue} {}

  // Runs `task` with the queue unless it is gone; it stays for that long, and with it the runtime
  // and the run loop. Any thread.
  template <typename Task>
  void pass(const Task& task) {
    const std::shared_lock lock{mutex_};
    if (queue_ != nullptr) task(*queue_);
  }

  // The queue, or null. Main thread only.
  [[nodiscard]] PingQueue* queue() const { return queue_; }

  void close() {
    const std::unique_lock lock{mutex_};
    queue_ = nullptr;
  }

 private:
  std::shared_mutex mutex_;
  PingQueue* queue_;
};

PingQueue::PingQueue(const Environment& environment)
    : limits_{environment.limits()},
      runLoop_{environment.platform().runLoop},
      http_{environment.platform().http},
      gate_{std::make_shared<Gate>(*this)},
      startsLeft_{startsPerTurn} {}

PingQueue::~PingQueue() { gate_->close(); }

void PingQueue::add(std::shared_ptr<QueuedPing> ping) {
  auto& server = servers_.try_emplace(serverOf(ping->url())).first->second;
  if (!makeRoomFor(server)) return ping->dropped();
  if (!server.isBusy()) ++busyServers_;
  server.waiting.push_back(std::move(ping));
  ++waiting_;
  giveTurn(server);
  pump();
}

bool PingQueue::makeRoomFor(const Server& server) {
  if (server.waiting.size() >= limits_.queuedPingsPerHost) return false;
  if (waiting_ < limits_.queuedPings) return true;
  const auto longest =
      std::max_element(servers_.begin(), servers_.end(), [](auto& one, auto& other) {
        return one.second.waiting.size() < other.second.waiting.size();
      });
  auto& queue = longest->second.waiting;
  if (queue.size() <= server.waiting.size() + 1) return false;  // would be the longest itself
  const auto last = std::move(queue.back());
  queue.pop_back();
  --waiting_;
  last->dropped();
  return true;
}

void PingQueue::giveTurn(Server& server) {
  if (server.hasTurn || server.waiting.empty()) return;
  server.hasTurn = true;
  turns_.push_back(&server);
}

int PingQueue::windowOf(const Server& server) const {
  if (server.sharesConnection) return server.streams.size();
  const int share = limits_.pingConnections / std::max(busyServers_, 1);
  return server.window.size(std::min(limits_.pingConnectionsPerHost, share), server.waiting.size());
}

void PingQueue::pump() {
  std::vector<Server*> waiting;
  while (!turns_.empty()) {
    auto& server = *turns_.front();
    turns_.pop_front();
    if (hasToWait(server)) {
      waiting.push_back(&server);
      continue;
    }
    server.hasTurn = false;
    // A server whose window is full gets its next turn when one of its pings is answered.
    if (server.underWay >= windowOf(server)) continue;
    start(server);
    if (!server.isBusy()) --busyServers_;
    giveTurn(server);
  }
  turns_.insert(turns_.begin(), waiting.begin(), waiting.end());
}

bool PingQueue::hasToWait(const Server& server) const {
  return server.sharesConnection ? startsLeft_ == 0
                                 : connections_ >= std::max(limits_.pingConnections, 1);
}

void PingQueue::start(Server& server) {
  Sent sent{.ping = std::move(server.waiting.front()),
            .server = &server,
            .road = server.sharesConnection ? Road::sharedConnection : Road::ownConnection,
            .at = {}};
  server.waiting.pop_front();
  --waiting_;
  count(server, sent.road, 1);
  auto request = sent.ping->prepare();
  if (!request) return count(server, sent.road, -1);
  if (sent.road == Road::sharedConnection) countStart();
  sent.at = runLoop_->now();
  http_->send(std::move(*request),
              [gate = gate_, sent = std::move(sent)](const HttpResult& result) {
                if (auto* const queue = gate->queue()) queue->arrived(sent, result);
              });
}

void PingQueue::countStart() {
  if (--startsLeft_ > 0) return;
  runLoop_->post([gate = gate_] {
    auto* const queue = gate->queue();
    if (queue == nullptr) return;
    queue->startsLeft_ = startsPerTurn;
    queue->pump();
  });
}

void PingQueue::count(Server& server, Road road, int pings) {
  server.underWay += pings;
  underWay_ += pings;
  if (road == Road::ownConnection) connections_ += pings;
}

void PingQueue::arrived(const Sent& sent, const HttpResult& result) {
  auto& server = *sent.server;
  const Seconds took = runLoop_->now() - sent.at;
  count(server, sent.road, -1);
  if (!server.isBusy()) --busyServers_;
  // Failures say little about the road: a refusal is quick, a time-out is not a round trip.
  if (!result.error) note(server, sent, result, took);
  outcomes_.push_back({sent.ping, result, took});
  giveTurn(server);
  pump();
  forgetIdleServers();
  tellSoon();
}

// The first answer says how the server speaks. One may go back to connections of their own, as a
// server whose machines differ does.
void PingQueue::note(Server& server, const Sent& sent, const HttpResult& result, Seconds took) {
  server.sharesConnection = result.sharedConnection;
  if (sent.road == Road::sharedConnection) {
    server.streams.answered(took);
  } else {
    server.window.answered(took);
  }
}

void PingQueue::forgetIdleServers() {
  if (servers_.size() <= rememberedServers) return;
  std::erase_if(servers_,
                [](const auto& entry) { return !entry.second.isBusy() && !entry.second.hasTurn; });
}

void PingQueue::tellSoon() {
  if (waiting_ == 0) return tell();
  if (!telling_.isValid()) telling_ = runLoop_->after(burstPatience, [this] { tell(); });
}

void PingQueue::tell() {
  telling_.invalidate();
  runLoop_->background(
      [gate = gate_, outcomes = std::make_shared<const Outcomes>(std::exchange(outcomes_, {}))] {
        gate->pass([&](const PingQueue& queue) {
          for (const auto& outcome : *outcomes) outcome.ping->answered(outcome.result);
          queue.runLoop_->post([gate, outcomes] { settle(*gate, *outcomes); });
        });
      });
}

// Whoever hears of one may end the runtime.
void PingQueue::settle(const Gate& gate, const Outcomes& outcomes) {
  for (const auto& outcome : outcomes) {
    if (gate.queue() != nullptr) outcome.ping->settled(outcome.result, outcome.took);
  }
}

}  // namespace tavo
