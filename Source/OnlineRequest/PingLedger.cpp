#include "OnlineRequest/PingLedger.h"

#include <utility>

#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

TrackingLedger& TrackingLedger::sharedInstance() {
  return livingEnvironment()->shared<PingLedger>();
}

std::uint64_t PingLedger::enter(const Url& url, const std::string& context, Date due) {
  PingRecord record;
  record.number = ++totals_.due;
  record.url = url;
  record.context = context;
  record.due = due;
  const auto number = record.number;
  records_.push_back(std::move(record));
  if (records_.size() > mostRecords) records_.pop_front();
  tell(records_.back());
  return number;
}

// A copy, which is made for those who look: the host may change the book from inside the report.
void PingLedger::tell(const PingRecord& record) {
  if (!observer.implements(&TrackingLedgerObserver::pingDidChange)) return;
  observer.tell(&TrackingLedgerObserver::pingDidChange, PingRecord{record});
}

void PingLedger::markSent(std::uint64_t number) {
  mark(number, totals_.sent, [](PingRecord& record) { record.state = PingState::sent; });
}

void PingLedger::markAnswered(std::uint64_t number, int status, Seconds took) {
  mark(number, totals_.answered, [&](PingRecord& record) {
    record.state = PingState::answered;
    record.status = status;
    record.took = took;
  });
}

void PingLedger::markFailed(std::uint64_t number, const Error& error, Seconds took) {
  mark(number, totals_.failed, [&](PingRecord& record) {
    record.state = PingState::failed;
    record.error = error;
    record.took = took;
  });
}

void PingLedger::markSuppressed(std::uint64_t number) {
  mark(number, totals_.suppressed,
       [](PingRecord& record) { record.state = PingState::suppressed; });
}

void PingLedger::markDropped(std::uint64_t number) {
  mark(number, totals_.dropped, [](PingRecord& record) { record.state = PingState::dropped; });
}

void PingLedger::mark(std::uint64_t number, std::uint64_t& total,
                      const std::function<void(PingRecord&)>& change) {
  ++total;
  if (records_.empty() || number < records_.front().number) return;
  auto& record = records_[static_cast<std::size_t>(number - records_.front().number)];
  change(record);
  tell(record);
}

}  // namespace tavo
