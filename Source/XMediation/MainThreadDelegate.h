#pragma once

#include <functional>
#include <memory>

#include <tavo/CVAdDelegate.h>

#include "Services/RunLoop.h"
#include "XMediation/MediatedAd.h"

namespace tavo {

// Takes what a network says on any thread to its ad on the main thread, as long as somebody is
// interested in the ad. A network may keep it for ever: it holds on to nothing but the run loop.
class MainThreadDelegate : public CVAdDelegate {
 public:
  MainThreadDelegate(std::shared_ptr<RunLoop> runLoop, std::weak_ptr<MediatedAd> ad)
      : runLoop_{std::move(runLoop)}, ad_{std::move(ad)} {}

  void adDidReceiveAd(CVAd& ad) override;
  void adRequestFailedWithError(CVAd& ad, const Error& error) override;
  void adWasClicked(CVAd& ad) override;
  void adWillClose(CVAd& ad) override;
  void adDidClose(CVAd& ad) override;
  void adWillPresent(CVAd& ad) override;
  void adDidPresent(CVAd& ad) override;
  void adWillLeaveApplication(CVAd& ad) override;

 private:
  using Table = XMediationInterfaceDelegate;

  void pass(std::function<void(MediatedAd&)> news) const;
  void pass(Table::Event Table::*event) const;

  const std::shared_ptr<RunLoop> runLoop_;
  const std::weak_ptr<MediatedAd> ad_;
};

}  // namespace tavo
