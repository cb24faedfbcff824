// A network library built with headers of another version. What it offers must never be made.
#include <cstdlib>

#include <tavo/AdNetworkExports.h>

namespace {

constexpr tavo::AdNetworkClass classes[] = {
    {"CVBannerAdView", []() -> tavo::CVAd* { std::abort(); }},
};
constexpr tavo::AdNetworkExports exports{tavo::adNetworkVersion + 1, 1, classes};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tavo::AdNetworkExports* tavo_ad_network() {
  return &exports;
}
