#include "UserInterface/StandardsVideo/CompanionOffer.h"

#include <algorithm>
#include <iterator>

namespace tavo {

namespace {

std::vector<std::string> creativeViews(const VastCompanion& companion) {
  std::vector<std::string> addresses;
  for (const auto& one : companion.tracking) {
    if (one.event == "creativeView") addresses.push_back(one.url);
  }
  return addresses;
}

bool fits(const VastCompanion& companion, const std::vector<Size>& places) {
  if (companion.resources.empty()) return false;
  return places.empty() || std::any_of(places.begin(), places.end(), [&](const Size& place) {
           return companion.width <= place.width && companion.height <= place.height;
         });
}

}  // namespace

// The view holds the offer, so a host needs to keep only one of them.
std::shared_ptr<View> CompanionOffer::view() {
  if (auto known = view_.lock()) return known;
  const auto self = shared_from_this();
  const auto view = VastResourceView::create(
      settings_.environment,
      {0, 0, static_cast<double>(companion_.width), static_cast<double>(companion_.height)},
      companion_.resources, companion_.altText, VastResourceView::Pages::takeClicks,
      {.shown = [self] { self->didShow(); },
       .failed = [] {},
       .clicked = [self] { self->didClick(); },
       .opened = [self](const Url& url) { self->opened(url); }});
  view_ = view;
  return view;
}

void CompanionOffer::didShow() {
  settings_.pings->once(settings_.name + " creativeView", creativeViews(companion_));
}

void CompanionOffer::didClick() { opened(settings_.pings->filled(companion_.click.through)); }

void CompanionOffer::opened(const Url& url) {
  const auto held = shared_from_this();
  settings_.pings->each(settings_.name + " click", companion_.click.tracking);
  if (!url.empty()) settings_.open(url);
}

std::vector<VastCompanion> fittingCompanions(const VastAd& ad, const std::vector<Size>& places) {
  std::vector<VastCompanion> fitting;
  for (const auto& creative : ad.creatives) {
    std::copy_if(creative.companions.begin(), creative.companions.end(),
                 std::back_inserter(fitting),
                 [&](const VastCompanion& companion) { return fits(companion, places); });
  }
  const auto area = [](const VastCompanion& companion) {
    return static_cast<std::int64_t>(companion.width) * companion.height;
  };
  std::stable_sort(fitting.begin(), fitting.end(), [area](const auto& left, const auto& right) {
    return area(left) > area(right);
  });
  return fitting;
}

}  // namespace tavo
