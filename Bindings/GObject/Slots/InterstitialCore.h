#pragma once

#include <gtk/gtk.h>

#include <memory>

#include <tavo/XAdInterstitialViewController.h>

#include "Slots/SlotCore.h"

namespace tavo::gobject {

// An interstitial's controller, made by the first load. It holds its object while it is on the
// screen.
class InterstitialCore : public SlotCore {
 public:
  InterstitialCore(GObject* object, guint dismissedSignal);
  ~InterstitialCore() override;

  [[nodiscard]] bool isPresented() const {
    return controller_ && controller_->presentingViewController() != nullptr;
  }
  bool present(GtkWindow* window, GError** error);
  void close();

  [[nodiscard]] MobileAdSubTypes kind() const override;
  void perform(ClickToAction action, const ClickToActionParameters& parameters) override;

 protected:
  bool mayStart(GError** error) const override;
  void start(const std::shared_ptr<XAdSlotConfiguration>& settings) override;
  void stop() override;
  void end() override;

 private:
  using Reports = XAdInterstitialViewControllerDelegate;

  [[nodiscard]] Reports outcomes();
  void addEvents(Reports& reports);
  [[nodiscard]] bool mayPresent(GtkWindow* window, GError** error) const;
  void holdWith(GtkWindow* window);
  void letGo();
  void dismissed();

  const guint dismissedSignal_;
  const std::shared_ptr<const Reports> events_;
  std::shared_ptr<XAdInterstitialViewController> controller_;
  Ref<GObject> self_;  // while the ad is on the screen
  Ref<GtkWindow> window_;
  gulong destroyed_ = 0;
};

}  // namespace tavo::gobject
