#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include <tavo/Date.h>
#include <tavo/Error.h>
#include <tavo/Observer.h>
#include <tavo/Url.h>

namespace tavo {

enum class PingState {
  due,         // waits for its turn
  sent,        // is on its way
  answered,    // with whatever status
  failed,      // the transport gave up
  suppressed,  // the network was away: never sent
  dropped,     // too many were waiting: never sent
};

// What became of one tracking ping.
struct PingRecord {
  std::uint64_t number = 0;  // in the order in which they became due, from 1
  Url url;
  std::string context;  // what is tracked, for example "trackImpressions"
  Date due{};
  PingState state = PingState::due;
  int status = 0;  // HTTP status of the answer
  std::optional<Error> error;
  Seconds took{0};  // from sending to the end of the exchange
};

// How many pings came to each state; the first two are moments that a ping passes.
struct PingTotals {
  std::uint64_t due = 0;
  std::uint64_t sent = 0;
  std::uint64_t answered = 0;
  std::uint64_t failed = 0;
  std::uint64_t suppressed = 0;
  std::uint64_t dropped = 0;
  friend bool operator==(const PingTotals&, const PingTotals&) = default;
};

struct TrackingLedgerObserver {
  // A ping is new or has come to another state. Called on the main thread.
  std::function<void(const PingRecord&)> pingDidChange{};
};

// The book of the tracking pings, for hosts and tools that want to know what was counted. Writing
// it changes nothing on the wire. Keeps the newest thousand pings; the totals count all of them.
// Main thread only.
class TrackingLedger {
 public:
  // The book of the process.
  [[nodiscard]] static TrackingLedger& sharedInstance();

  static constexpr std::size_t mostRecords = 1'000;

  // Oldest first.
  [[nodiscard]] const std::deque<PingRecord>& records() const { return records_; }
  [[nodiscard]] const PingTotals& totals() const { return totals_; }
  Observer<TrackingLedgerObserver> observer;

  // The entries of the tracking requests. `enter` returns the ping's number, for the others.
  std::uint64_t enter(const Url& url, const std::string& context);
  void markSent(std::uint64_t number);
  void markAnswered(std::uint64_t number, int status, Seconds took);
  void markFailed(std::uint64_t number, const Error& error, Seconds took);
  void markSuppressed(std::uint64_t number);
  void markDropped(std::uint64_t number);

 private:
  // Counts the change; then changes the record, unless it is too old to be kept.
  void mark(std::uint64_t number, std::uint64_t& total,
            const std::function<void(PingRecord&)>& change);

  std::deque<PingRecord> records_;
  PingTotals totals_;
};

}  // namespace tavo
