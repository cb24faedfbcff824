#include "XMediation/MainThreadDelegate.h"

namespace tavo {

// Only the main thread makes an owner of the ad, so that only the main thread can destroy it.
void MainThreadDelegate::pass(std::function<void(MediatedAd&)> news) const {
  if (runLoop_->isMainThread()) {
    if (const auto ad = ad_.lock()) news(*ad);
    return;
  }
  if (ad_.expired()) return;
  runLoop_->post([weak = ad_, news = std::move(news)] {
    if (const auto ad = weak.lock()) news(*ad);
  });
}

void MainThreadDelegate::pass(Table::Event Table::*event) const {
  pass([event](MediatedAd& ad) { ad.report(event); });
}

void MainThreadDelegate::adDidReceiveAd(CVAd& /*ad*/) {
  pass([](MediatedAd& ad) { ad.received(); });
}

void MainThreadDelegate::adRequestFailedWithError(CVAd& /*ad*/, const Error& error) {
  pass([error](MediatedAd& ad) { ad.failed(error); });
}

void MainThreadDelegate::adWasClicked(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdWasClickedWithXAdView);
}

void MainThreadDelegate::adWillClose(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdWillCloseWithXAdView);
}

void MainThreadDelegate::adDidClose(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdDidCloseWithXAdView);
}

void MainThreadDelegate::adWillPresent(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdWillPresentWithXAdView);
}

void MainThreadDelegate::adDidPresent(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdDidPresentWithXAdView);
}

void MainThreadDelegate::adWillLeaveApplication(CVAd& /*ad*/) {
  pass(&Table::XMediationInterfaceAdWillLeaveApplicationWithXAdView);
}

}  // namespace tavo
