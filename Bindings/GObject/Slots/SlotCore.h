#pragma once

#include <gio/gio.h>

#include <memory>
#include <optional>
#include <string>

#include <tavo/ClickToAction.h>
#include <tavo/Error.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Support/Errors.h"
#include "Support/Pointers.h"
#include "tavo-ads/tavo-ads-slot.h"

namespace tavo::gobject {

// Signals that every slot has.
enum class SlotSignal {
  loaded,
  failed,
  clicked,
  customUrl,
  reviewPage,
  leavesApplication,
  browserOpened,
  browserClosed,
  quartile,
  videoPaused,
  videoResumed,
  videoSkipped,
  videoRewound,
  fullScreenEntered,
  fullScreenLeft,
  memoryLow,
  count,
};

[[nodiscard]] guint idOf(SlotSignal signal);

// The C++ side of a slot: what banners, interstitials and pre-rolls have in common. The object owns
// it until it is finalized; a handler may dispose of the object in any signal, so everything here
// holds the object while it tells something.
class SlotCore {
 public:
  struct Address {
    std::string domain, page, position, keywords, query;
  };

  explicit SlotCore(GObject* owner);
  virtual ~SlotCore();
  SlotCore(const SlotCore&) = delete;
  SlotCore& operator=(const SlotCore&) = delete;

  [[nodiscard]] const Address& address() const { return address_; }
  void setAddress(std::string Address::*part, const char* property, const char* text);
  [[nodiscard]] TavoAdsSlotSettings* settings() const { return settings_.get(); }
  void setSettings(TavoAdsSlotSettings* settings);
  [[nodiscard]] bool isLoaded() const { return loaded_; }
  [[nodiscard]] bool isLoading() const { return loading_; }
  [[nodiscard]] virtual MobileAdSubTypes kind() const = 0;

  // False with a reason: a load cannot begin.
  [[nodiscard]] bool mayLoad(GError** error) const;
  // The task hears the first outcome; null for a load that nobody waits for.
  void load(Ref<GTask> task);
  void release();
  virtual void perform(ClickToAction action, const ClickToActionParameters& parameters) = 0;

  // The object is being disposed of: ends everything, tells only who waits.
  void retire();

  // What the library reports.
  void tellLoaded();
  void tellFailed(ErrorPtr error);
  void tellClicked() { (void)askClick(TAVO_ADS_ACTION_PAGE, nullptr); }
  [[nodiscard]] bool mayPerform(ClickToAction action, const ClickToActionParameters& parameters);
  [[nodiscard]] bool mayShowPage();
  void tellCustomUrl(const std::string& url) { tell(SlotSignal::customUrl, url.c_str()); }
  void tellQuartile(int quartile) { tell(SlotSignal::quartile, quartile); }
  void tell(SlotSignal signal) { emit(idOf(signal)); }
  template <typename Argument>
  void tell(SlotSignal signal, Argument argument) {
    emit(idOf(signal), argument);
  }
  template <typename... Arguments>
  void emit(guint signal, Arguments... arguments) {
    if (const auto object = owner()) g_signal_emit(object.get(), signal, 0, arguments...);
  }
  void notify(const char* property);

  // Null once nobody holds the object any more.
  [[nodiscard]] Ref<GObject> owner() const;

 protected:
  // What kind of slot it is decides what of this means what.
  virtual bool mayStart(GError** /*error*/) const { return true; }
  virtual void start(const std::shared_ptr<XAdSlotConfiguration>& settings) = 0;
  // Takes the ad away and reports nothing.
  virtual void stop() = 0;
  virtual void end() { stop(); }

  // The ad is gone, after it was there or without that; whoever waits hears `error`.
  void adIsOver(ErrorPtr error);

 private:
  void setState(bool loaded, bool loading);
  [[nodiscard]] Ref<GTask> takeTask();
  void giveUp(ErrorPtr error);
  void listenForCancel(GTask* task);
  void cancel();
  [[nodiscard]] bool askClick(TavoAdsAction action, GVariant* details);

  mutable GWeakRef owner_;
  Address address_;
  Ref<TavoAdsSlotSettings> settings_;
  Ref<GTask> task_;
  GSource* cancelSource_ = nullptr;
  bool loaded_ = false;
  bool loading_ = false;
  bool retired_ = false;
};

}  // namespace tavo::gobject
