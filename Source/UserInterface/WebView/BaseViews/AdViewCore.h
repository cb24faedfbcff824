#pragma once

#include <memory>

#include "OnlineRequest/AdAddress.h"
#include "UserInterface/WebView/BaseViews/AdViewClicks.h"
#include "UserInterface/WebView/BaseViews/AdViewLoader.h"
#include "UserInterface/WebView/BaseViews/AdViewOutcomes.h"
#include "UserInterface/WebView/BaseViews/AdViewPart.h"
#include "UserInterface/WebView/BaseViews/AdViewStage.h"
#include "UserInterface/WebView/BaseViews/MraidPresentation.h"

namespace tavo {

class XAdManager;

// What works behind an ad view: owns its parts and passes the word between them. Main thread only.
class AdViewCore : public AdViewPart, private AdViewLoader::Host, private MraidPresentation::Host {
 public:
  AdViewCore(std::shared_ptr<Environment> environment, XAdView& view);

  // Asks for an ad there, with a new ad manager.
  void load(AdAddress address);
  // Also from inside a report of whatever is released.
  void releaseMemory();
  // The same, and the host hears that an expanded ad is none any more.
  void leaveForBackground() override;
  void leaveScreen();

  [[nodiscard]] const std::shared_ptr<XAdManager>& adManager() const { return adManager_; }
  [[nodiscard]] AdViewLoader& loader() { return loader_; }
  [[nodiscard]] MraidPresentation& presentation() { return presentation_; }
  [[nodiscard]] AdViewClicks& clicks() { return clicks_; }

 private:
  void makeManager();
  [[nodiscard]] bool showsRenderer() const;

  // AdViewLoader::Host
  [[nodiscard]] RefreshFacts refreshFacts() const override;
  [[nodiscard]] bool isExpandedOrResized() const override;
  void willLoad() override { outcomes_.forgetLastLoad(); }
  void requestAd(bool waiting) override;
  void reload() override;
  void didReceiveMemoryWarning() override;
  void didLockScreen() override;
  void orientatioDidChange() override { presentation_.orientationDidChange(); }

  // MraidPresentation::Host
  [[nodiscard]] const Rect& defaultFrame() const override { return view().defaultFrame(); }
  [[nodiscard]] bool isDeviceLocked() const override { return loader_.isDeviceLocked(); }
  [[nodiscard]] bool appBrowserOpen() const override { return clicks_.appBrowserOpen(); }
  void adDidExpand() override { tell(&Told::xAdDidExpand); }
  void adDidCollapse() override { tell(&Told::xAdDidCollapse); }
  void interstitialAdDidClose() override;
  void customUrlOpened(const Url& url) override { tell(&Told::xAdViewShouldHandleCustomURL, url); }
  void orientationPropertiesDidChange(const XMRAIDOrientationProperties& properties) override;

  const std::shared_ptr<Environment> environment_;
  AdAddress address_;  // of the last load, for every later one
  AdViewLoader loader_;
  MraidPresentation presentation_;
  AdViewClicks clicks_;
  AdViewStage stage_;
  AdViewOutcomes outcomes_;
  std::shared_ptr<XAdManager> adManager_;
};

}  // namespace tavo
