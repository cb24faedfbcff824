#include "Tracker/XAdTracker.h"

#include <array>
#include <cstdio>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "OnlineRequest/XTrackingRequest.h"

namespace tavo {

namespace {

constexpr const char* trackEventOperation = "-[XAdTracker trackEvent:]";

// One line of the system log about a tracker; the line numbers are those that log readers look for.
void logFact(const XAdTracker& tracker, int line, const std::string& fact) {
  std::array<char, 32> address{};
  std::snprintf(address.data(), address.size(), "%p", static_cast<const void*>(&tracker));
  platformLog(std::string{trackEventOperation} + " [Line " + std::to_string(line) + "] <" +
              address.data() + "> " + fact);
}

}  // namespace

XAdTracker::XAdTracker(std::shared_ptr<Environment> environment)
    : environment_{std::move(environment)} {}

void XAdTracker::trackImpressions() const {
  const OperationLog log{"-[XAdTracker trackImpressions]"};
  for (const auto& url : impressionURLs) {
    XTrackingRequest::sendAsynchronousRequest(*environment_, url, "trackImpressions",
                                              slotConfiguration);
  }
}

void XAdTracker::trackEvent(std::string_view event) const {
  const OperationLog log{trackEventOperation};
  const auto entry = trackingEvents.find(event);
  if (entry == trackingEvents.end()) return;
  const auto* urls = std::get_if<std::map<std::string, Url>>(&entry->second);
  if (urls == nullptr) return;
  for (const auto& [key, url] : *urls) {
    logFact(*this, 48, "key: " + key);
    logFact(*this, 49, "url: " + url.text());
    const std::string context = "trackEvent: " + std::string{event} + " (" + key + ")";
    XTrackingRequest::sendAsynchronousRequest(*environment_, url, context, slotConfiguration);
  }
}

}  // namespace tavo
