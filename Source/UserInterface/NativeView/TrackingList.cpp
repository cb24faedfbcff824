#include "UserInterface/NativeView/TrackingList.h"

#include <utility>

namespace tavo {

namespace {

XLinear* firstLinear(const XVASTAd& ad) {
  if (!ad.inlineAd || !ad.inlineAd->creativesArray || ad.inlineAd->creativesArray->empty()) {
    return nullptr;
  }
  return &ad.inlineAd->creativesArray->front().linearAds;
}

void append(std::vector<XTrackingEvent>& list, const XWrapperAd& wrapper) {
  if (!wrapper.creativesArray) return;
  for (const auto& creative : *wrapper.creativesArray) {
    const auto& events = creative.linearAds.trackingEventsArray;
    if (events) list.insert(list.end(), events->begin(), events->end());
  }
}

void append(std::vector<Url>& urls, const std::vector<XImpression>& impressions) {
  for (const auto& impression : impressions) {
    Url url = Url::fromText(impression.url.value_or(""));
    if (!url.empty()) urls.push_back(std::move(url));
  }
}

}  // namespace

TrackingList mergedTracking(const std::shared_ptr<XVASTAd>& ad) {
  XLinear* linear = ad ? firstLinear(*ad) : nullptr;
  if (linear == nullptr || !linear->mediaFilesArray || linear->mediaFilesArray->empty() ||
      !linear->trackingEventsArray) {
    return nullptr;
  }
  auto& list = *linear->trackingEventsArray;
  if (!std::exchange(ad->inlineAd->wrapperEventsMerged, true)) {
    for (const auto& wrapper : ad->wrapperAd) {
      append(list, *wrapper);
      ad->inlineAd->documents.push_back(wrapper->document);
    }
  }
  return {ad->inlineAd, &list};
}

std::optional<std::vector<Url>> eventUrls(const TrackingList& list, TrackingEventType type) {
  if (!list || list->empty()) return std::nullopt;
  std::vector<Url> urls;
  for (const auto& event : *list) {
    if (event.eventType != type || !event.eventURL) continue;
    Url url = Url::fromText(*event.eventURL);
    if (!url.empty()) urls.push_back(std::move(url));
  }
  return urls;
}

Url clickThroughOf(const XVASTAd& ad) {
  Url last;
  if (!ad.inlineAd || !ad.inlineAd->creativesArray) return last;
  for (const auto& creative : *ad.inlineAd->creativesArray) {
    if (!creative.linearAds.videoClicksArray) continue;
    for (const auto& click : *creative.linearAds.videoClicksArray) {
      Url url = Url::fromText(click.clickThroughgURL.value_or(""));
      if (!url.empty()) last = std::move(url);
    }
  }
  return last;
}

std::vector<Url> chainImpressions(const XVASTAd& ad) {
  std::vector<Url> urls;
  for (const auto& wrapper : ad.wrapperAd) append(urls, wrapper->impresssionArray);
  if (ad.inlineAd) append(urls, ad.inlineAd->impresssionArray);
  return urls;
}

OptionalText skipOffSetFromVASTAd(const XVASTAd& ad) {
  const XLinear* linear = firstLinear(ad);
  return linear != nullptr ? linear->skipOffset : std::nullopt;
}

OptionalText durationFromVASTAd(const XVASTAd& ad) {
  const XLinear* linear = firstLinear(ad);
  return linear != nullptr ? linear->duration : std::nullopt;
}

}  // namespace tavo
