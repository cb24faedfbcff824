#include "AdController/ResponseParser/StandardsVast/VastAdSource.h"

#include <algorithm>
#include <utility>

namespace tavo {

namespace {
constexpr std::size_t fetchesForAd = 4;  // on an average
}  // namespace

void VastAdSource::begin(std::string_view text, const Url& base) {
  enter(readVastDocument(text, base, settings_.limits), {}, {});
}

void VastAdSource::first(Completion completion) {
  completion_ = std::move(completion);
  start_ = settings_.now();
  go();
}

void VastAdSource::nextAfter(bool shown, Completion completion) {
  settle(shown);
  first(std::move(completion));
}

// A fetch that is over inside its call leaves its outcome to the loop that made it.
void VastAdSource::go() {
  if (std::exchange(running_, true)) return;
  const auto held = shared_from_this();
  while (step()) {
  }
  running_ = false;
}

// One step on the way to the next ad; false when there is something to wait for, or an outcome.
bool VastAdSource::step() {
  if (!completion_) return false;
  const std::size_t most = settings_.limits.vastAdsInBreak;
  if (breaks_.empty() || tried_ >= most || fetches_ >= fetchesForAd * most) {
    breaks_.clear();
    std::exchange(completion_, nullptr)(std::nullopt);
    return completion_ != nullptr;
  }
  VastBreak& top = breaks_.back();
  current_ = top.take();
  if (!current_) {
    const bool shown = top.hasShown();
    breaks_.pop_back();
    settle(shown);
    return true;
  }
  if (current_->isWrapper) return follow(current_);
  ++tried_;
  VastTrail chain = top.trail();
  chain.push_back(current_);
  if (isBlocked(*current_, top.trail())) return giveUp(VastErrorCode::blockedCategory, chain);
  const VastTurn turn{mergedAd(*current_, top.trail()), std::move(chain), top.place(), top.size()};
  std::exchange(completion_, nullptr)(turn);
  return completion_ != nullptr;  // who cannot use it has asked for another one
}

bool VastAdSource::follow(const std::shared_ptr<const VastAd>& wrapper) {
  VastTrail trail = breaks_.back().trail();
  trail.push_back(wrapper);
  const Url url = Url::fromText(wrapper->tagUri);
  if (!breaks_.back().rules().wrappers) return giveUp(VastErrorCode::noAd, trail);
  if (!url.isHttp()) return giveUp(VastErrorCode::wrapper, trail);
  const auto asBefore = std::count_if(
      trail.begin(), trail.end(), [&](const auto& one) { return one->tagUri == wrapper->tagUri; });
  if (asBefore > 1 || trail.size() > settings_.limits.vastWrapperDepth) {
    return giveUp(VastErrorCode::wrapperLimit, trail);
  }
  if (timeLeft() <= Seconds{0}) return giveUp(VastErrorCode::wrapperTimeout, trail);
  ++fetches_;
  settings_.fetch(url, std::min(settings_.limits.wrapperTimeout, timeLeft()),
                  [weak = weak_from_this(), wrapper](const VastFetched& fetched) {
                    if (const auto self = weak.lock()) self->received(wrapper, fetched);
                  });
  return false;
}

void VastAdSource::received(const std::shared_ptr<const VastAd>& wrapper,
                            const VastFetched& fetched) {
  const auto held = shared_from_this();
  VastTrail trail = breaks_.back().trail();
  const VastBreak::Rules outer = breaks_.back().rules();
  trail.push_back(wrapper);
  if (!fetched.body) {
    giveUp(VastErrorCode::wrapperTimeout, trail);
  } else {
    enter(readVastDocument(*fetched.body, fetched.url, settings_.limits), std::move(trail),
          {.multipleAds = outer.multipleAds && wrapper->allowsMultipleAds,
           .wrappers = outer.wrappers && wrapper->followsWrappers});
  }
  go();
}

void VastAdSource::enter(const VastDocument& document, VastTrail trail, VastBreak::Rules rules) {
  if (document.ads.empty()) {
    giveUp(document.failure.value_or(VastErrorCode::noAd), trail, document.errors);
  } else {
    breaks_.emplace_back(document, std::move(trail), rules);
  }
}

bool VastAdSource::giveUp(VastErrorCode code, const VastTrail& trail,
                          const std::vector<std::string>& more) {
  tell(code, trail, more);
  settle(false);
  return true;
}

void VastAdSource::settle(bool shown) {
  if (!breaks_.empty()) breaks_.back().settle(shown);
}

void VastAdSource::tell(VastErrorCode code, const VastTrail& trail,
                        const std::vector<std::string>& more) {
  std::vector<std::string> addresses;
  for (const auto& ad : trail) {
    if (!told_.insert(ad.get()).second) continue;
    kept_.push_back(ad);
    addresses.insert(addresses.end(), ad->errors.begin(), ad->errors.end());
  }
  addresses.insert(addresses.end(), more.begin(), more.end());
  failed_(code, addresses);
}

Seconds VastAdSource::timeLeft() const {
  return start_ + settings_.limits.wrapperChainBudget - settings_.now();
}

}  // namespace tavo
