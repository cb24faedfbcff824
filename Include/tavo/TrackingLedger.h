#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include <tavo/Date.h>
#include <tavo/Error.h>
#include <tavo/Export.h>
#include <tavo/Observer.h>
#include <tavo/Url.h>

namespace tavo {

// Where a ping stands. `due` and `sent` are passed; each of the others is an end.
enum class PingState {
  due,         // waits for its turn
  sent,        // is on its way
  answered,    // with whatever HTTP status
  failed,      // the transport gave up
  suppressed,  // the network was away: never sent
  dropped,     // too many were waiting: never sent
};

// What became of one tracking ping.
struct PingRecord {
  std::uint64_t number = 0;  // in the order in which they became due, from 1
  Url url;
  std::string context;  // what is tracked, for example "trackImpressions"
  Date due{};           // when the ad asked for it
  PingState state = PingState::due;
  int status = 0;              // HTTP status; 0 before an answer
  std::optional<Error> error;  // of the transport, once it failed
  Seconds took{0};             // from sending to the end of the exchange
};

// How many pings came to each state since the runtime began. Once nothing is under way, `due` is
// the sum of the four ends.
struct PingTotals {
  std::uint64_t due = 0;
  std::uint64_t sent = 0;
  std::uint64_t answered = 0;
  std::uint64_t failed = 0;
  std::uint64_t suppressed = 0;
  std::uint64_t dropped = 0;
  friend bool operator==(const PingTotals&, const PingTotals&) = default;
};

// Held weakly by the ledger; the host keeps its table as long as it wants to hear.
struct TrackingLedgerObserver {
  // A ping is new or has come to another state. Called on the main thread, once a state and in
  // their order; the record is a copy of that moment. It may end the ad that the ping belongs to.
  std::function<void(const PingRecord&)> pingDidChange{};
};

// The book of the tracking pings (impressions, clicks, events of videos), for hosts and tools that
// want to know what was counted. Reading it, or not, changes nothing on the wire. Main thread only.
class TAVO_EXPORT TrackingLedger {
 public:
  // The book of the current runtime. It ends with the runtime's environment.
  [[nodiscard]] static TrackingLedger& sharedInstance();

  TrackingLedger(const TrackingLedger&) = delete;
  TrackingLedger& operator=(const TrackingLedger&) = delete;

  // So many records are kept; the oldest go first. The totals count all of them.
  static constexpr std::size_t mostRecords = 1'000;

  // Oldest first. The reference lives as long as the book; its elements change with each ping.
  [[nodiscard]] const std::deque<PingRecord>& records() const { return records_; }
  [[nodiscard]] const PingTotals& totals() const { return totals_; }
  Observer<TrackingLedgerObserver> observer;

 protected:
  TrackingLedger() = default;
  ~TrackingLedger() = default;

  std::deque<PingRecord> records_;
  PingTotals totals_;
};

}  // namespace tavo
