// A small ad network as a library: what an external network has to build. It shares the headers of
// the SDK and nothing else with the host; the host names its file at run time.
#include <tavo/AdNetworkExports.h>

#include "SampleBanner.h"
#include "SampleInterstitial.h"

namespace {

tavo::CVAd* makeBanner() { return new sample::SampleBanner; }
tavo::CVAd* makeInterstitial() { return new sample::SampleInterstitial; }

constexpr tavo::AdNetworkClass classes[] = {
    {tavo::CVBannerAdView::className, makeBanner},
    {tavo::CVInterstitialAd::className, makeInterstitial},
};
constexpr tavo::AdNetworkExports exports{tavo::adNetworkVersion, 2, classes};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tavo::AdNetworkExports* tavo_ad_network() {
  return &exports;
}
