#include <tavo/Runtime.h>
#include <tavo/TrackingLedger.h>

#include "Runtime/Environment.h"
#include "Services/RunLoop.h"

namespace tavo {

TrackingLedger& TrackingLedger::sharedInstance() {
  return Runtime::current().environment()->shared<TrackingLedger>();
}

std::uint64_t TrackingLedger::enter(const Url& url, const std::string& context) {
  PingRecord record;
  record.number = ++totals_.due;
  record.url = url;
  record.context = context;
  record.due = Runtime::current().platform().runLoop->today();
  records_.push_back(record);
  if (records_.size() > mostRecords) records_.pop_front();
  observer.tell(&TrackingLedgerObserver::pingDidChange, record);
  return record.number;
}

void TrackingLedger::markSent(std::uint64_t number) {
  mark(number, totals_.sent, [](PingRecord& record) { record.state = PingState::sent; });
}

void TrackingLedger::markAnswered(std::uint64_t number, int status, Seconds took) {
  mark(number, totals_.answered, [&](PingRecord& record) {
    record.state = PingState::answered;
    record.status = status;
    record.took = took;
  });
}

void TrackingLedger::markFailed(std::uint64_t number, const Error& error, Seconds took) {
  mark(number, totals_.failed, [&](PingRecord& record) {
    record.state = PingState::failed;
    record.error = error;
    record.took = took;
  });
}

void TrackingLedger::markSuppressed(std::uint64_t number) {
  mark(number, totals_.suppressed,
       [](PingRecord& record) { record.state = PingState::suppressed; });
}

void TrackingLedger::markDropped(std::uint64_t number) {
  mark(number, totals_.dropped, [](PingRecord& record) { record.state = PingState::dropped; });
}

void TrackingLedger::mark(std::uint64_t number, std::uint64_t& total,
                          const std::function<void(PingRecord&)>& change) {
  ++total;
  if (records_.empty() || number < records_.front().number) return;
  auto& record = records_[static_cast<std::size_t>(number - records_.front().number)];
  change(record);
  observer.tell(&TrackingLedgerObserver::pingDidChange, PingRecord{record});
}

}  // namespace tavo
