#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Date.h>
#include <tavo/Url.h>

#include "AdController/ResponseParser/VASTXMLParser/VastFailure.h"
#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// Takes the bytes that a fetch brought; none when it failed.
using VastFetchCompletion = std::function<void(std::optional<std::string> body)>;

// Fetches the document behind a URL within `timeout` and calls the completion once, at once or
// later, on the thread that the parser is used on.
using VastFetch = std::function<void(const Url& url, Seconds timeout, VastFetchCompletion)>;

// What became of a load that was not over at once: the shared root, or why there is none. What was
// parsed before a failure stays in the shared root.
struct VastOutcome {
  std::shared_ptr<XVASTAd> ad;
  std::optional<VastFailure> failure;
  // Of a failure, for the inspection: the document at fault, none for the first one, and why.
  std::string failedUrl{};
  std::string why{};
};
using VastCompletion = std::function<void(const VastOutcome& outcome)>;

// Runs a load of XVASTXMLParser and turns its named failure into an outcome.
template <typename Load>
[[nodiscard]] VastOutcome outcomeOf(const Load& load) {
  try {
    return {load(), std::nullopt};
  } catch (const VastFailure& failure) {
    return {nullptr, failure};
  }
}

}  // namespace tavo
