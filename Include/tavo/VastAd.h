#pragma once

#include <optional>
#include <string>
#include <vector>

#include <tavo/VastCreative.h>

namespace tavo {

// What an ad wants to be measured by. The library runs no program of others: it says so to those
// who ask to be told, and a host that has one finds its address here.
struct VastVerification {
  struct Resource {
    std::string url;
    std::string apiFramework;  // as "omid"
    std::string type;          // of an executable
    bool isScript = true;
    bool browserOptional = false;
  };
  std::string vendor;
  std::vector<Resource> resources;
  std::vector<VastTracking> tracking;  // "verificationNotExecuted"
  std::string parameters;
};

// Addresses for a host that measures whether the film could be seen.
struct VastViewableImpression {
  std::string id;
  std::vector<std::string> viewable;
  std::vector<std::string> notViewable;
  std::vector<std::string> undetermined;
};

struct VastCategory {
  std::string authority;
  std::string code;
};

struct VastPricing {
  std::string value;
  std::string model;
  std::string currency;
};

// One ad of a VAST document (2.0 to 4.2) as a value, for a host to read: what its wrappers carry is
// merged in. Only in the standards mode. The library tells the addresses in it by itself, save for
// those of ViewableImpression and Survey.
struct VastAd {
  std::string id;
  std::optional<int> sequence;  // place in a pod
  std::string adType;           // "video", "audio" or "hybrid"
  std::string version;          // of its document
  bool conditional = false;

  std::string system;
  std::string systemVersion;
  std::string title;
  std::string description;
  std::string advertiser;
  std::string adServingId;
  std::optional<int> expires;  // seconds
  std::optional<VastPricing> pricing;
  std::vector<VastCategory> categories;
  std::vector<std::string> surveys;

  std::vector<std::string> impressions;
  std::vector<std::string> errors;
  std::vector<VastViewableImpression> viewableImpressions;
  std::vector<VastVerification> verifications;
  std::vector<VastCreative> creatives;  // in the order of their sequence

  // Of a wrapper.
  bool isWrapper = false;
  std::string tagUri;
  bool followsWrappers = true;  // further wrappers may follow
  bool allowsMultipleAds = false;
  std::optional<bool> fallsBackOnNoAd;  // none: as the player likes
  std::vector<VastCategory> blockedCategories;

  // The film: that of the first creative with one; null without.
  [[nodiscard]] const VastLinear* linear() const {
    for (const auto& creative : creatives) {
      if (creative.linear) return &*creative.linear;
    }
    return nullptr;
  }
};

}  // namespace tavo
