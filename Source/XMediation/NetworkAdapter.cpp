#include "XMediation/NetworkAdapter.h"

#include <tavo/SdkErrors.h>

namespace tavo {

// Quirk: the network's codes run the other way round; every other number counts as 1.
int networkGender(std::int32_t mediationGender) {
  if (mediationGender == -1) return 0;
  return mediationGender == 0 ? 2 : 1;
}

// Whoever is told may load again: the list is complete before anybody hears.
void NetworkAdapter::keep(const std::shared_ptr<MediatedAd>& ad, const MediatedView& adView) {
  releaseAdOf(adView);
  ads_.push_back(ad);
}

void NetworkAdapter::releaseAdOf(const MediatedView& adView) {
  abandonWhere([&](const MediatedAd& ad) { return ad.isFor(adView) || ad.isOver(); });
}

void NetworkAdapter::abandonLoadOf(const MediatedView& adView) {
  abandonWhere([&](const MediatedAd& ad) { return ad.isFor(adView) && ad.isLoading(); });
}

void NetworkAdapter::abandonWhere(const std::function<bool(const MediatedAd&)>& unwanted) {
  std::vector<std::shared_ptr<MediatedAd>> leaving;
  for (const auto& ad : ads_) {
    if (unwanted(*ad)) leaving.push_back(ad);
  }
  std::erase_if(ads_, [&](const auto& ad) { return unwanted(*ad); });
  for (const auto& ad : leaving) ad->abandon();
}

void NetworkAdapter::releaseAll() {
  abandonWhere([](const MediatedAd&) { return true; });
}

void NetworkAdapter::refuse(MediatedView& adView) {
  delegate.tell(
      &XMediationInterfaceDelegate::XMediationInterfaceAdRequestFailedWithErrorXAdView, *this,
      makeError(SdkError::mediationImpossible, "Missing required mediation classes."), adView);
}

// Quirk: an age that is not known is told as well, as "-1".
void NetworkAdapter::passTargeting(CVAd& ad) const {
  ad.setAge(std::to_string(mediationAge));
  ad.setGender(networkGender(mediationGender));
  ad.setCustomKeywords(mediationKeywords);
  if (!userLocation) return;
  ad.setLocationWithLatitude(userLocation->latitude, userLocation->longitude,
                             userLocation->timestamp, userLocation->horizontalAccuracy);
}

}  // namespace tavo
