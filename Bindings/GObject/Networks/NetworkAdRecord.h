#pragma once

#include <gtk/gtk.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

#include <tavo/CVAd.h>
#include <tavo/Geometry.h>
#include <tavo/Location.h>

#include "Support/Pointers.h"
#include "tavo-ads/tavo-ads-network-ad.h"

namespace tavo::gobject {

// What the library has asked of a network's ad, what the network has answered, and whom it tells.
// Main thread only.
struct NetworkAdRecord {
  std::string placementId;
  bool isInterstitial = false;
  Size size;
  bool opensOutside = false;
  int age = -1;
  int gender = 0;
  std::map<std::string, std::string> keywords;
  std::optional<Location> location;

  Ref<GtkWidget> widget;

  CVAd* ad = nullptr;  // null once the library has let go of it
  std::weak_ptr<CVAdDelegate> delegate;
};

[[nodiscard]] NetworkAdRecord& recordOf(TavoAdsNetworkAd* ad);

}  // namespace tavo::gobject
