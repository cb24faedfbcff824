#include "OnlineRequest/PingQueue.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <vector>

#include "Services/RunLoop.h"

namespace tavo {

namespace {
// Round trips are remembered for so many hosts.
constexpr std::size_t rememberedHosts = 64;
}  // namespace

// What a completion holds of the queue, which may be gone by then.
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
      sharing_{dynamic_cast<const SharedConnections*>(http_.get())},
      gate_{std::make_shared<Gate>(*this)} {}

PingQueue::~PingQueue() { gate_->close(); }

void PingQueue::add(QueuedPing ping) {
  auto& host = hosts_.try_emplace(std::string{ping.url.host()}).first->second;
  if (!makeRoomFor(host)) return ping.dropped();
  if (!host.isBusy()) ++busyHosts_;
  host.waiting.push_back(std::move(ping));
  ++waiting_;
  giveTurn(host);
  pump();
}

bool PingQueue::makeRoomFor(const Host& host) {
  if (host.waiting.size() >= limits_.queuedPingsPerHost) return false;
  if (waiting_ < limits_.queuedPings) return true;
  const auto longest = std::max_element(hosts_.begin(), hosts_.end(), [](auto& one, auto& other) {
    return one.second.waiting.size() < other.second.waiting.size();
  });
  auto& queue = longest->second.waiting;
  if (queue.size() <= host.waiting.size() + 1) return false;  // would be the longest itself
  const QueuedPing last = std::move(queue.back());
  queue.pop_back();
  --waiting_;
  last.dropped();
  return true;
}

void PingQueue::giveTurn(Host& host) {
  if (host.hasTurn || host.waiting.empty()) return;
  host.hasTurn = true;
  const auto entry = hosts_.find(host.waiting.front().url.host());
  turns_.push_back(&*entry);
}

int PingQueue::windowOf(const Host& host) const {
  if (host.sharesConnection) return host.streams.size();
  const int share = limits_.pingConnections / std::max(busyHosts_, 1);
  return host.window.size(std::min(limits_.pingConnectionsPerHost, share));
}

void PingQueue::pump() {
  const int most = std::max(limits_.pingConnections, 1);
  std::vector<Hosts::value_type*> withoutConnection;
  while (!turns_.empty()) {
    auto* const entry = turns_.front();
    auto& [name, host] = *entry;
    turns_.pop_front();
    if (connections_ >= most && !host.sharesConnection) {
      withoutConnection.push_back(entry);
      continue;
    }
    host.hasTurn = false;
    // A host whose window is full gets its next turn when one of its pings is answered.
    if (host.underWay >= windowOf(host)) continue;
    start(name, host);
    if (!host.isBusy()) --busyHosts_;
    giveTurn(host);
  }
  turns_.insert(turns_.begin(), withoutConnection.begin(), withoutConnection.end());
}

void PingQueue::start(const std::string& name, Host& host) {
  const auto ping = std::make_shared<QueuedPing>(std::move(host.waiting.front()));
  host.waiting.pop_front();
  --waiting_;
  const Road road = host.sharesConnection ? Road::sharedConnection : Road::ownConnection;
  count(host, road, 1);
  auto request = ping->prepare();
  if (!request) return count(host, road, -1);
  request->completionThread = CompletionThread::background;

  auto completion = [gate = gate_, name, ping, road,
                     started = runLoop_->now()](const HttpResult& result) {
    gate->pass([&](const PingQueue& queue) {
      const Seconds took = queue.runLoop_->now() - started;
      ping->answered(result);
      queue.runLoop_->post([gate, name, ping, result, took, road] {
        if (auto* waiting = gate->queue()) waiting->finished(name, *ping, result, took, road);
      });
    });
  };
  http_->send(std::move(*request), std::move(completion));
}

void PingQueue::count(Host& host, Road road, int pings) {
  host.underWay += pings;
  underWay_ += pings;
  if (road == Road::ownConnection) connections_ += pings;
}

void PingQueue::finished(const std::string& name, const QueuedPing& ping, const HttpResult& result,
                         Seconds took, Road road) {
  auto& host = hosts_.find(name)->second;
  count(host, road, -1);
  if (!host.isBusy()) --busyHosts_;
  // Failures say little about the road: a refusal is quick, a time-out is not a round trip.
  if (!result.error) note(host, ping, took, road);
  giveTurn(host);
  pump();
  forgetIdleHosts();
  ping.settled(result, took);
}

// The first answer says how the server speaks. One may go back to connections of their own, as a
// host whose machines differ does.
void PingQueue::note(Host& host, const QueuedPing& ping, Seconds took, Road road) const {
  host.sharesConnection = sharing_ != nullptr && sharing_->sharesConnection(ping.url);
  if (road == Road::sharedConnection) {
    host.streams.answered(took);
  } else {
    host.window.answered(took);
  }
}

void PingQueue::forgetIdleHosts() {
  if (hosts_.size() <= rememberedHosts) return;
  std::erase_if(hosts_, [](const auto& entry) {
    return entry.second.underWay == 0 && entry.second.waiting.empty() && !entry.second.hasTurn;
  });
}

}  // namespace tavo
