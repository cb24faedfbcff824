#include "XMediation/XMediationInterstitial.h"

#include <tavo/AdNetworkClasses.h>
#include <tavo/CVInterstitialAd.h>
#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

namespace {

class MediatedInterstitial : public MediatedAd {
 public:
  MediatedInterstitial(XMediationInterface& adapter, std::shared_ptr<RunLoop> runLoop,
                       const std::shared_ptr<MediatedView>& adView,
                       const std::shared_ptr<CVInterstitialAd>& network,
                       ViewController* rootViewController)
      : MediatedAd{adapter, std::move(runLoop), adView, network}, network_{network} {
    if (rootViewController != nullptr) root_ = rootViewController->weak_from_this();
  }

 protected:
  void present() override {
    const auto network = network_.lock();
    const auto root = root_.lock();
    if (network && root) return network->displayAdFromViewController(root);
    failed(makeError(SdkError::mediationImpossible,
                     "There is no view controller to present the mediated ad over."));
  }

 private:
  std::weak_ptr<CVInterstitialAd> network_;
  std::weak_ptr<ViewController> root_;
};

}  // namespace

XMediationInterstitial& XMediationInterstitial::sharedInstance() {
  return livingEnvironment()->shared<XMediationInterstitial>();
}

void XMediationInterstitial::loadAdWithXAdView(const std::shared_ptr<MediatedView>& adView,
                                               const std::string& placementId, const Size& /*size*/,
                                               ViewController* rootViewController) {
  const OperationLog log{
      "-[XMediationInterstitial loadAdWithXAdView:placementId:size:rootViewController:]"};
  platformLog("Loading interstitial ad from Corvane Mediation Network for placementId: " +
              placementId);
  const auto interstitial = makeNetworkAd<CVInterstitialAd>();
  if (!interstitial) return refuse(*adView);
  const auto ad = std::make_shared<MediatedInterstitial>(*this, runLoop(), adView, interstitial,
                                                         rootViewController);
  keep(ad, *adView);
  ad->attempt([&] {
    interstitial->setPlacementId(placementId);
    interstitial->setDelegate(ad->delegate());
    interstitial->setOpensInNativeBrowser(!shouldOpenInAppBrowser);
    passTargeting(*interstitial);
    if (!ad->isOver()) interstitial->loadAd();
  });
}

void XMediationInterstitial::releaseMemory() {
  const OperationLog log{"-[XMediationInterstitial releaseMemory]"};
  releaseAll();
}

}  // namespace tavo
