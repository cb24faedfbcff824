#pragma once

#include <memory>

#include <tavo/CVAd.h>

#include "tavo-ads/tavo-ads-network-ad.h"

namespace tavo::gobject {

// Makes an object of `type`, which is derived from TavoAdsNetworkAd, and the library's face of it.
[[nodiscard]] std::shared_ptr<CVAd> makeNetworkBanner(GType type);
[[nodiscard]] std::shared_ptr<CVAd> makeNetworkInterstitial(GType type);

// Puts the widget of a banner into its slot.
void showNetworkWidget(CVAd& ad, GtkWidget* widget);

}  // namespace tavo::gobject
