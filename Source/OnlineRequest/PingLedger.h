#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <tavo/TrackingLedger.h>

namespace tavo {

// The book of the tracking pings, from the side of those who write it. Main thread only.
class PingLedger : public TrackingLedger {
 public:
  // Enters a ping that has become due and returns its number, for the operations below.
  std::uint64_t enter(const Url& url, const std::string& context, Date due);

  void markSent(std::uint64_t number);
  void markAnswered(std::uint64_t number, int status, Seconds took);
  void markFailed(std::uint64_t number, const Error& error, Seconds took);
  void markSuppressed(std::uint64_t number);
  void markDropped(std::uint64_t number);

 private:
  void tell(const PingRecord& record);
  // Counts the change; then changes the record, unless it is too old to be kept.
  void mark(std::uint64_t number, std::uint64_t& total,
            const std::function<void(PingRecord&)>& change);
};

}  // namespace tavo
