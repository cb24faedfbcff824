#include "AdController/ResponseParser/StandardsVast/VastMerge.h"

#include <algorithm>
#include <iterator>

namespace tavo {

namespace {

template <typename Value>
void putBefore(std::vector<Value>& list, const std::vector<Value>& more) {
  list.insert(list.begin(), more.begin(), more.end());
}

VastLinear* filmOf(VastAd& ad) {
  for (auto& creative : ad.creatives) {
    if (creative.linear) return &*creative.linear;
  }
  return nullptr;
}

void mergeIcons(VastLinear& film, const VastLinear& wrapper) {
  for (const auto& icon : wrapper.icons) {
    const bool known = std::any_of(film.icons.begin(), film.icons.end(), [&](const VastIcon& own) {
      return !icon.program.empty() && own.program == icon.program;
    });
    if (!known) film.icons.push_back(icon);
  }
}

void mergeFilm(VastLinear& film, const VastAd& wrapper) {
  for (auto creative = wrapper.creatives.rbegin(); creative != wrapper.creatives.rend();
       ++creative) {
    if (!creative->linear) continue;
    const VastLinear& other = *creative->linear;
    putBefore(film.tracking, other.tracking);
    putBefore(film.click.tracking, other.click.tracking);
    putBefore(film.customClicks, other.customClicks);
    mergeIcons(film, other);
  }
}

bool hasCompanions(const VastAd& ad) {
  return std::any_of(ad.creatives.begin(), ad.creatives.end(),
                     [](const VastCreative& creative) { return !creative.companions.empty(); });
}

void takeCompanions(VastAd& ad, const VastAd& wrapper) {
  std::copy_if(wrapper.creatives.begin(), wrapper.creatives.end(), std::back_inserter(ad.creatives),
               [](const VastCreative& creative) { return !creative.companions.empty(); });
  for (auto& creative : ad.creatives) {
    if (!creative.companions.empty()) creative.linear.reset();
  }
}

}  // namespace

VastAd mergedAd(const VastAd& ad, const VastTrail& trail) {
  VastAd merged = ad;
  for (auto at = trail.rbegin(); at != trail.rend(); ++at) {
    const VastAd& wrapper = **at;
    putBefore(merged.errors, wrapper.errors);
    putBefore(merged.impressions, wrapper.impressions);
    putBefore(merged.viewableImpressions, wrapper.viewableImpressions);
    putBefore(merged.verifications, wrapper.verifications);
    if (VastLinear* const film = filmOf(merged)) mergeFilm(*film, wrapper);
    if (!hasCompanions(merged)) takeCompanions(merged, wrapper);
  }
  return merged;
}

bool isBlocked(const VastAd& ad, const VastTrail& trail) {
  const auto blocks = [&ad](const VastCategory& blocked) {
    return std::any_of(ad.categories.begin(), ad.categories.end(), [&](const VastCategory& own) {
      const bool sameList = blocked.authority.empty() || own.authority == blocked.authority;
      // A list may stand in one element, its codes apart by commas.
      return sameList && !own.code.empty() &&
             ("," + blocked.code + ",").find("," + own.code + ",") != std::string::npos;
    });
  };
  return std::any_of(trail.begin(), trail.end(), [&](const auto& wrapper) {
    return std::any_of(wrapper->blockedCategories.begin(), wrapper->blockedCategories.end(),
                       blocks);
  });
}

}  // namespace tavo
