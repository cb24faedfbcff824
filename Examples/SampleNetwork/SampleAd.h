#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include <tavo/CVAd.h>

#include "SampleAnswer.h"

namespace sample {

// What the network's banners and interstitials share. `Class` is the SDK's abstract class.
template <typename Class>
class SampleAd : public Class {
 public:
  void setPlacementId(const std::string& placementId) override { placementId_ = placementId; }
  void setDelegate(const std::weak_ptr<tavo::CVAdDelegate>& delegate) override {
    delegate_ = delegate;
  }
  void setOpensInNativeBrowser(bool opens) override { opensInNativeBrowser_ = opens; }
  // A network with a server would send these along.
  void setAge(const std::string& /*age*/) override {}
  void setGender(int /*gender*/) override {}
  void setCustomKeywords(std::map<std::string, std::string> /*keywords*/) override {}
  void setLocationWithLatitude(double /*latitude*/, double /*longitude*/,
                               std::optional<tavo::Date> /*timestamp*/,
                               double /*horizontalAccuracy*/) override {}

  void loadAd() override {
    later(life_, [this] {
      const auto refusal = refusalOf(placementId_);
      if (!refusal) return arrived();
      if (const auto heard = delegate_.lock()) heard->adRequestFailedWithError(*this, *refusal);
    });
  }

 protected:
  using Event = void (tavo::CVAdDelegate::*)(tavo::CVAd&);

  // The ad is there: draw it and say so.
  virtual void arrived() = 0;

  void tell(Event event) {
    if (const auto heard = delegate_.lock()) (heard.get()->*event)(*this);
  }
  // For whatever may outlive the ad: ends with it.
  [[nodiscard]] std::weak_ptr<void> life() const { return life_; }

  std::string placementId_;
  std::weak_ptr<tavo::CVAdDelegate> delegate_;
  bool opensInNativeBrowser_ = true;

 private:
  const std::shared_ptr<void> life_ = std::make_shared<char>();
};

}  // namespace sample
