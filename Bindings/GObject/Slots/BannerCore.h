#pragma once

#include <gtk/gtk.h>

#include <memory>

#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>

#include "Slots/SlotCore.h"

namespace tavo::gobject {

// An ad view inside a widget. The view is made by the first load, so that a widget may be made
// before the library is set up.
class BannerCore : public SlotCore {
 public:
  // Signals of banners alone.
  struct Signals {
    guint expanded, collapsed, filmDismissed;
  };

  BannerCore(GtkWidget* widget, const Signals& signals);
  ~BannerCore() override;

  // The widget that shows the ad; null before the first load.
  [[nodiscard]] GtkWidget* child() const;
  [[nodiscard]] const Size& size() const { return size_; }
  void setSize(const Size& size);
  [[nodiscard]] bool isExpanded() const { return view_ && view_->isAdExpanded(); }
  [[nodiscard]] bool isMediated() const { return view_ && view_->isMediationAdServed(); }
  void refresh();
  void collapse();

  [[nodiscard]] MobileAdSubTypes kind() const override;
  void perform(ClickToAction action, const ClickToActionParameters& parameters) override;

 protected:
  bool mayStart(GError** error) const override;
  void start(const std::shared_ptr<XAdSlotConfiguration>& settings) override;
  void stop() override;
  void end() override;

 private:
  void makeView();
  void dropView();
  void startView(const std::shared_ptr<XAdSlotConfiguration>& settings);

  GtkWidget* const widget_;  // the owner
  const std::shared_ptr<const XAdViewDelegate> events_;
  Size size_{320, 50};
  std::shared_ptr<XAdView> view_;
  std::unique_ptr<gtk::AdSlot> slot_;
};

}  // namespace tavo::gobject
