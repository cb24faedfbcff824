#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Date.h>
#include <tavo/Url.h>

#include "AdController/ResponseParser/VASTXMLParser/VASTFailure.h"
#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo {

// Takes the bytes that a fetch brought; none when it failed.
using VASTFetchCompletion = std::function<void(std::optional<std::string> body)>;

// Fetches the document behind a URL within `timeout` and calls the completion once, at once or
// later, on the thread that the parser is used on.
using VASTFetch = std::function<void(const Url& url, Seconds timeout, VASTFetchCompletion)>;

// What became of a load that was not over at once: the shared root, or why there is none. What was
// parsed before a failure stays in the shared root.
struct VASTOutcome {
  std::shared_ptr<XVASTAd> ad;
  std::optional<VASTFailure> failure;
};
using VASTCompletion = std::function<void(const VASTOutcome& outcome)>;

// Runs a load of XVASTXMLParser and turns its named failure into an outcome.
template <typename Load>
[[nodiscard]] VASTOutcome outcomeOf(const Load& load) {
  try {
    return {load(), std::nullopt};
  } catch (const VASTFailure& failure) {
    return {nullptr, failure};
  }
}

}  // namespace tavo
