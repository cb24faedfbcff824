#include "OnlineRequest/XTrackingRequest.h"

#include "Communicator/Network/XNetworkManager.h"
#include "ErrorHandler/OperationLog.h"
#include "OnlineRequest/PingLedger.h"
#include "OnlineRequest/PingQueue.h"
#include "OnlineRequest/TrackedPing.h"
#include "Runtime/Environment.h"
#include "Services/RunLoop.h"
#include "Values/Text.h"

namespace tavo {

void XTrackingRequest::sendAsynchronousRequest(
    Environment& environment, const Url& url, const std::string& context,
    const std::shared_ptr<XAdSlotConfiguration>& slotConfiguration) {
  const OperationLog log{"+[XTrackingRequest sendAsynchronousRequest:context:slotConfiguration:]"};
  auto& ledger = environment.shared<PingLedger>();
  const bool isNullText = equalsIgnoringCase(url.text(), "(null)");
  const bool isDue = !url.empty() && !isNullText;
  const auto number =
      isDue ? ledger.enter(url, context, environment.platform().runLoop->today()) : 0;
  if (!XNetworkManager::shareInstance(environment).internetAvailable()) {
    log.debug("\n\nInternet not available");
    if (isDue) ledger.markSuppressed(number);
    return;
  }
  log.debug("\n\nURL: ", url.empty() ? std::string_view{"(null)"} : std::string_view{url.text()});
  if (url.empty()) return;
  if (isNullText) {
    log.debug("\n\nSending tracking request asynchronously");
    log.debug("\n\nUnable to track as URL is not found");
    return;
  }
  environment.shared<PingQueue>().add(
      std::make_shared<TrackedPing>(environment, url, context, slotConfiguration, number));
}

}  // namespace tavo
