#pragma once

#include <memory>

#include <tavo/XAdView.h>

#include "Slots/SlotCore.h"
#include "tavo-ads/tavo-ads-player.h"

namespace tavo::gobject {

// An ad view that is lent a player. It stands in no window itself: the player does.
class PrerollCore : public SlotCore {
 public:
  PrerollCore(GObject* object, guint finishedSignal);
  ~PrerollCore() override;

  [[nodiscard]] TavoAdsPlayer* player() const { return player_.get(); }
  void setPlayer(TavoAdsPlayer* player) { player_ = Ref<TavoAdsPlayer>::share(player); }

  [[nodiscard]] MobileAdSubTypes kind() const override;
  void perform(ClickToAction action, const ClickToActionParameters& parameters) override;

 protected:
  bool mayStart(GError** error) const override;
  void start(const std::shared_ptr<XAdSlotConfiguration>& settings) override;
  void stop() override;
  void end() override;

 private:
  void loaded();
  void finished();

  const guint finishedSignal_;
  const std::shared_ptr<const XAdViewDelegate> events_;
  Ref<TavoAdsPlayer> player_;
  std::shared_ptr<XAdView> view_;
};

}  // namespace tavo::gobject
