#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Runtime/Environment.h"

namespace tavo {

// Sends the pings of one event of a video ad. Short-lived: it may be dropped as soon as a call
// returns. It remembers nothing, so calling twice sends twice. Main thread only.
class XAdTracker {
 public:
  explicit XAdTracker(std::shared_ptr<Environment> environment);

  // The URLs of one event, each under a key; a plain list is no event.
  using EventUrls = std::variant<std::map<std::string, Url>, std::vector<Url>>;

  // What takes part in sending.
  std::vector<Url> impressionURLs;
  std::map<std::string, EventUrls, std::less<>> trackingEvents;  // by the event's name
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;       // goes along with every request

  // Carried for the holder.
  std::string system;
  std::string title;
  Url impressionURL;
  Url clickThroughURL;
  Url clickTrackingURL;
  std::vector<Url> clickTrackingURLs;
  double duration = 0;  // seconds
  Url mediaFileURL;

  // Sends every impression URL, in the order of the list.
  void trackImpressions() const;

  // Sends the URLs of the event, in the order of their keys. An event that is not there, or is a
  // plain list, sends nothing.
  void trackEvent(std::string_view event) const;

 private:
  std::shared_ptr<Environment> environment_;
};

}  // namespace tavo
