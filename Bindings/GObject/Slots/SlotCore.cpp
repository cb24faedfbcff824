#include "Slots/SlotCore.h"

#include <utility>

#include "Settings/Conversions.h"
#include "Settings/SlotSettingsObject.h"
#include "Support/Process.h"
#include "Support/Properties.h"

namespace tavo::gobject {

SlotCore::SlotCore(GObject* owner)
    : settings_{Ref<TavoAdsSlotSettings>::adopt(tavo_ads_slot_settings_new())} {
  g_weak_ref_init(&owner_, owner);
}

SlotCore::~SlotCore() { g_weak_ref_clear(&owner_); }

Ref<GObject> SlotCore::owner() const {
  return Ref<GObject>::adopt(static_cast<GObject*>(g_weak_ref_get(&owner_)));
}

void SlotCore::notify(const char* property) {
  if (const auto object = owner()) g_object_notify(object.get(), property);
}

void SlotCore::setAddress(std::string Address::*part, const char* property, const char* text) {
  if (address_.*part == textOf(text)) return;
  address_.*part = textOf(text);
  notify(property);
}

void SlotCore::setSettings(TavoAdsSlotSettings* settings) {
  if (settings == settings_.get()) return;
  settings_ = settings == nullptr ? Ref<TavoAdsSlotSettings>::adopt(tavo_ads_slot_settings_new())
                                  : Ref<TavoAdsSlotSettings>::share(settings);
  notify("settings");
}

bool SlotCore::mayLoad(GError** error) const {
  if (!Process::isUsable(error)) return false;
  if (retired_) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_RELEASED,
                        "The slot was disposed of.");
    return false;
  }
  if (address_.domain.empty() || address_.page.empty() || address_.position.empty()) {
    g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_INVALID_ARGUMENT,
                        "Set the domain, the page and the position before the load.");
    return false;
  }
  return mayStart(error);
}

void SlotCore::load(Ref<GTask> task) {
  const auto held = owner();
  giveUp(errorOf(TAVO_ADS_ERROR_REPLACED, "Another load has taken the place of this one."));
  if (retired_) return;  // by whoever was told
  task_ = std::move(task);
  if (task_) listenForCancel(task_.get());
  setState(false, true);
  if (!retired_) start(recordOf(settings_.get()));
}

void SlotCore::release() {
  const auto held = owner();
  if (!retired_) stop();
  setState(false, false);
  giveUp(errorOf(TAVO_ADS_ERROR_RELEASED, "The slot was released before there was an answer."));
}

void SlotCore::retire() {
  if (std::exchange(retired_, true)) return;
  end();
  loaded_ = loading_ = false;
  giveUp(errorOf(TAVO_ADS_ERROR_RELEASED, "The slot was disposed of before there was an answer."));
}

// A handler of these may end the object, which is held here, or load anew.
void SlotCore::setState(bool loaded, bool loading) {
  const auto object = owner();
  const bool loadedChanges = std::exchange(loaded_, loaded) != loaded;
  const bool loadingChanges = std::exchange(loading_, loading) != loading;
  if (!object) return;
  g_object_freeze_notify(object.get());
  if (loadedChanges) g_object_notify(object.get(), "loaded");
  if (loadingChanges) g_object_notify(object.get(), "loading");
  g_object_notify(object.get(), "kind");
  g_object_thaw_notify(object.get());
}

Ref<GTask> SlotCore::takeTask() {
  if (cancelSource_ != nullptr) {
    g_source_destroy(cancelSource_);
    g_source_unref(std::exchange(cancelSource_, nullptr));
  }
  return std::exchange(task_, {});
}

void SlotCore::giveUp(ErrorPtr error) {
  if (const auto task = takeTask()) g_task_return_error(task.get(), error.release());
}

// On the main loop, whichever thread cancels.
void SlotCore::listenForCancel(GTask* task) {
  GCancellable* const cancellable = g_task_get_cancellable(task);
  if (cancellable == nullptr) return;
  cancelSource_ = g_cancellable_source_new(cancellable);
  const GCancellableSourceFunc cancelled = [](GCancellable*, gpointer core) -> gboolean {
    static_cast<SlotCore*>(core)->cancel();
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(cancelSource_, G_SOURCE_FUNC(cancelled), this, nullptr);
  g_source_attach(cancelSource_, nullptr);
}

void SlotCore::cancel() {
  const auto held = owner();
  const auto task = takeTask();
  if (!retired_) stop();
  setState(false, false);
  if (task) g_task_return_error_if_cancelled(task.get());
}

void SlotCore::tellLoaded() {
  const auto held = owner();
  const auto task = takeTask();
  setState(true, false);
  tell(SlotSignal::loaded);
  if (task) g_task_return_boolean(task.get(), TRUE);
}

void SlotCore::tellFailed(ErrorPtr error) {
  const auto held = owner();
  const auto task = takeTask();
  setState(false, false);
  tell(SlotSignal::failed, error.get());
  if (task) g_task_return_error(task.get(), error.release());
}

void SlotCore::adIsOver(ErrorPtr error) {
  const auto held = owner();
  setState(false, false);
  giveUp(std::move(error));
}

bool SlotCore::askClick(TavoAdsAction action, GVariant* details) {
  gboolean takenOver = FALSE;
  const VariantPtr sunk{details == nullptr ? nullptr : g_variant_ref_sink(details)};
  emit(idOf(SlotSignal::clicked), action, sunk.get(), &takenOver);
  return takenOver != FALSE;
}

bool SlotCore::mayPerform(ClickToAction action, const ClickToActionParameters& parameters) {
  return !askClick(static_cast<TavoAdsAction>(action), variantOf(parameters));
}

bool SlotCore::mayShowPage() {
  gboolean refused = FALSE;
  emit(idOf(SlotSignal::reviewPage), &refused);
  return refused == FALSE;
}

}  // namespace tavo::gobject
