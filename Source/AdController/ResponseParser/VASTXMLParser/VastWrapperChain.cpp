#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

namespace tavo {
namespace {

class Chain : public std::enable_shared_from_this<Chain> {
 public:
  Chain(std::shared_ptr<XVASTXMLParser> parser, VastFetch fetch, VastChainTiming timing,
        VastCompletion completion)
      : parser_{std::move(parser)},
        fetch_{std::move(fetch)},
        timing_{std::move(timing)},
        completion_{std::move(completion)},
        start_{timing_.now()} {}

  void begin(std::string_view text) {
    XVASTAd::resetInstance();
    receive(outcomeOf([this, text] { return parser_->loadXMLContentFromString(text); }));
  }

 private:
  // Goes on with each outcome that is there. A fetch that is over inside its call leaves its
  // outcome for the loop that made the call, so that a long chain does not grow the stack.
  void receive(const VastOutcome& outcome) {
    waiting_ = outcome;
    if (std::exchange(running_, true)) return;
    while (waiting_) {
      step(*std::exchange(waiting_, std::nullopt));
    }
    running_ = false;
  }

  void step(const VastOutcome& outcome) {
    const std::optional<Url> next = outcome.failure ? std::nullopt : nextDocument();
    if (!next) {
      VastOutcome end = outcome;
      if (end.failure) {
        end.failedUrl = previous_;
        end.why = end.failure->localizedDescription();
      }
      completion_(end);
    } else if (next->empty()) {
      const auto& wrapper = *XVASTAd::sharedInstance()->wrapperAd.back();
      fail(std::string{wrapper.vastTagURI.value_or("")},
           "The wrapper names something that is no URL.");
    } else if (!fetched_.insert(next->text()).second) {
      fail(next->text(), "The chain comes back to a document that it has read before.");
    } else if (timeLeft() <= Seconds{0}) {
      fail(next->text(), "The chain has used up its time before this document.");
    } else {
      previous_ = next->text();
      parser_->loadXMLContentFromURL(
          previous_, fetch_, std::min(timing_.perDocument, timeLeft()),
          [self = shared_from_this()](const VastOutcome& fetched) { self->receive(fetched); });
    }
  }

  void fail(const std::string& url, std::string why) {
    completion_({nullptr, VastFailure::invalidURL(), url, std::move(why)});
  }

  // The document that the last wrapper names: none when the chain is complete, an empty URL when
  // the name cannot be a URL.
  [[nodiscard]] std::optional<Url> nextDocument() const {
    const auto& wrappers = XVASTAd::sharedInstance()->wrapperAd;
    if (wrappers.empty() || wrappers.back()->vastTagURI.value_or("").empty()) return std::nullopt;
    Url url = Url::fromText(*wrappers.back()->vastTagURI);
    return !url.empty() && url.text() == previous_ ? std::nullopt : std::optional{std::move(url)};
  }

  [[nodiscard]] Seconds timeLeft() const { return start_ + timing_.budget - timing_.now(); }

  const std::shared_ptr<XVASTXMLParser> parser_;
  const VastFetch fetch_;
  const VastChainTiming timing_;
  const VastCompletion completion_;
  const Seconds start_;
  std::string previous_;  // the URL fetched just before
  std::unordered_set<std::string> fetched_;
  std::optional<VastOutcome> waiting_;
  bool running_ = false;
};

}  // namespace

void loadVastChain(std::string_view text, const std::shared_ptr<XVASTXMLParser>& parser,
                   VastFetch fetch, VastChainTiming timing, VastCompletion completion) {
  std::make_shared<Chain>(parser, std::move(fetch), std::move(timing), std::move(completion))
      ->begin(text);
}

}  // namespace tavo
