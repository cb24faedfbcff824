// A VAST ad of several documents: they stand one behind the other, divided by a zero byte, and each
// fetch of the chain brings the next one, or nothing behind the last. What comes of it goes the way
// to the player: the media file, the tracking list, the impressions, the click.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "Headless/HeadlessPlatform.h"
#include "Lines.h"
#include "UserInterface/NativeView/MediaChoice.h"

using namespace tavo;
using fuzz::require;

namespace {

std::vector<std::string> documentsOf(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> documents(1);
  for (std::size_t at = 0; at < size; ++at) {
    if (data[at] == 0) {
      documents.emplace_back();
    } else {
      documents.back().push_back(static_cast<char>(data[at]));
    }
  }
  return documents;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Runtime runtime{headless::HeadlessPlatform{}.platform()};
  const auto documents = documentsOf(data, size);
  std::size_t fetched = 0;
  int completions = 0;
  std::vector<VastFetchCompletion> waiting;
  loadVastChain(
      documents.front(), std::make_shared<XVASTXMLParser>(),
      [&](const Url&, Seconds, const VastFetchCompletion& completion) {
        waiting.push_back(completion);
      },
      {Seconds{1}, Seconds{1e9}, [] { return Seconds{0}; }},
      [&](const VastOutcome& outcome) {
        require((outcome.ad != nullptr) != outcome.failure.has_value());
        if (outcome.ad) (void)videoURLFromVASTAd(*outcome.ad, 320);
        ++completions;
      });
  while (!waiting.empty()) {
    require(waiting.size() == 1 && fetched <= documents.size());
    const auto next = std::exchange(waiting, {}).front();
    ++fetched;
    next(fetched < documents.size() ? std::optional{documents[fetched]} : std::nullopt);
  }
  require(completions == 1);
  return 0;
}
