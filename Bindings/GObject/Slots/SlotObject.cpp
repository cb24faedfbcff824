#include "Slots/SlotObject.h"

#include <array>

#include "Settings/Conversions.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-enum-types.h"

namespace gobject = tavo::gobject;
using gobject::Process;
using gobject::SlotCore;
using gobject::SlotSignal;

G_DEFINE_INTERFACE(TavoAdsSlot, tavo_ads_slot, G_TYPE_OBJECT)

namespace {

std::array<guint, static_cast<std::size_t>(SlotSignal::count)> slotSignals{};

SlotCore& coreOf(TavoAdsSlot* self) { return *TAVO_ADS_SLOT_GET_IFACE(self)->core(self); }

template <typename... Types>
void newSignal(SlotSignal signal, const char* name, GType result, Types... types) {
  const bool asks = result == G_TYPE_BOOLEAN;
  slotSignals[static_cast<std::size_t>(signal)] =
      g_signal_new(name, TAVO_ADS_TYPE_SLOT, G_SIGNAL_RUN_LAST, 0,
                   asks ? g_signal_accumulator_true_handled : nullptr, nullptr, nullptr, result,
                   sizeof...(types), types...);
}

void addSignals() {
  newSignal(SlotSignal::loaded, "loaded", G_TYPE_NONE);
  newSignal(SlotSignal::failed, "failed", G_TYPE_NONE, G_TYPE_ERROR);
  newSignal(SlotSignal::clicked, "clicked", G_TYPE_BOOLEAN, TAVO_ADS_TYPE_ACTION, G_TYPE_VARIANT);
  newSignal(SlotSignal::customUrl, "custom-url", G_TYPE_NONE, G_TYPE_STRING);
  newSignal(SlotSignal::reviewPage, "review-page", G_TYPE_BOOLEAN);
  newSignal(SlotSignal::leavesApplication, "leaves-application", G_TYPE_NONE);
  newSignal(SlotSignal::browserOpened, "browser-opened", G_TYPE_NONE);
  newSignal(SlotSignal::browserClosed, "browser-closed", G_TYPE_NONE);
  newSignal(SlotSignal::quartile, "quartile", G_TYPE_NONE, TAVO_ADS_TYPE_QUARTILE);
  newSignal(SlotSignal::videoPaused, "video-paused", G_TYPE_NONE);
  newSignal(SlotSignal::videoResumed, "video-resumed", G_TYPE_NONE);
  newSignal(SlotSignal::videoSkipped, "video-skipped", G_TYPE_NONE);
  newSignal(SlotSignal::videoRewound, "video-rewound", G_TYPE_NONE);
  newSignal(SlotSignal::fullScreenEntered, "full-screen-entered", G_TYPE_NONE);
  newSignal(SlotSignal::fullScreenLeft, "full-screen-left", G_TYPE_NONE);
  newSignal(SlotSignal::memoryLow, "memory-low", G_TYPE_NONE);
}

constexpr std::array addressParts{
    std::pair{"domain", &SlotCore::Address::domain},
    std::pair{"page", &SlotCore::Address::page},
    std::pair{"position", &SlotCore::Address::position},
    std::pair{"keywords", &SlotCore::Address::keywords},
    std::pair{"query", &SlotCore::Address::query},
};

}  // namespace

static void tavo_ads_slot_default_init(TavoAdsSlotInterface* type) {
  for (const auto& part : addressParts) {
    g_object_interface_install_property(
        type, g_param_spec_string(part.first, nullptr, nullptr, "", gobject::propertyFlags));
  }
  g_object_interface_install_property(
      type, g_param_spec_object("settings", nullptr, nullptr, TAVO_ADS_TYPE_SLOT_SETTINGS,
                                gobject::propertyFlags));
  for (const char* name : {"loaded", "loading"}) {
    g_object_interface_install_property(
        type, g_param_spec_boolean(name, nullptr, nullptr, FALSE, gobject::readOnlyFlags));
  }
  g_object_interface_install_property(
      type, g_param_spec_enum("kind", nullptr, nullptr, TAVO_ADS_TYPE_KIND, TAVO_ADS_KIND_UNKNOWN,
                              gobject::readOnlyFlags));
  addSignals();
}

void tavo_ads_slot_set_address(TavoAdsSlot* self, const char* domain, const char* page,
                               const char* position) {
  g_return_if_fail(TAVO_ADS_IS_SLOT(self));
  g_object_set(self, "domain", domain, "page", page, "position", position, nullptr);
}

void tavo_ads_slot_load(TavoAdsSlot* self) {
  g_return_if_fail(TAVO_ADS_IS_SLOT(self));
  g_autoptr(GError) error = nullptr;
  if (coreOf(self).mayLoad(&error)) {
    coreOf(self).load({});
  } else {
    g_critical("%s: %s", __func__, error->message);
  }
}

void tavo_ads_slot_load_async(TavoAdsSlot* self, GCancellable* cancellable,
                              GAsyncReadyCallback callback, gpointer user_data) {
  g_return_if_fail(TAVO_ADS_IS_SLOT(self));
  g_return_if_fail(cancellable == nullptr || G_IS_CANCELLABLE(cancellable));
  auto task = gobject::Ref<GTask>::adopt(g_task_new(self, cancellable, callback, user_data));
  g_task_set_name(task.get(), "tavo_ads_slot_load_async");
  if (g_task_return_error_if_cancelled(task.get())) return;
  GError* error = nullptr;
  if (coreOf(self).mayLoad(&error)) {
    coreOf(self).load(std::move(task));
  } else {
    g_task_return_error(task.get(), error);
  }
}

gboolean tavo_ads_slot_load_finish(TavoAdsSlot* self, GAsyncResult* result, GError** error) {
  g_return_val_if_fail(TAVO_ADS_IS_SLOT(self), FALSE);
  g_return_val_if_fail(g_task_is_valid(result, self), FALSE);
  return g_task_propagate_boolean(G_TASK(result), error);
}

void tavo_ads_slot_release(TavoAdsSlot* self) {
  g_return_if_fail(TAVO_ADS_IS_SLOT(self));
  if (Process::isOnMainThread(__func__)) coreOf(self).release();
}

void tavo_ads_slot_perform(TavoAdsSlot* self, TavoAdsAction action, GVariant* details) {
  g_return_if_fail(TAVO_ADS_IS_SLOT(self));
  g_return_if_fail(details == nullptr || g_variant_is_of_type(details, G_VARIANT_TYPE_VARDICT));
  g_return_if_fail(action >= TAVO_ADS_ACTION_PHONE && action <= TAVO_ADS_ACTION_CALENDAR);
  if (!Process::isUsable(__func__)) return;
  const auto held = gobject::Ref<TavoAdsSlot>::share(self);
  coreOf(self).perform(static_cast<tavo::ClickToAction>(action), gobject::parametersOf(details));
}

gboolean tavo_ads_slot_get_loaded(TavoAdsSlot* self) {
  g_return_val_if_fail(TAVO_ADS_IS_SLOT(self), FALSE);
  return coreOf(self).isLoaded() ? TRUE : FALSE;
}

namespace tavo::gobject {

guint idOf(SlotSignal signal) { return slotSignals[static_cast<std::size_t>(signal)]; }

void overrideSlotProperties(GObjectClass* type) {
  guint id = domainId;
  for (const char* name : {"domain", "page", "position", "keywords", "query", "settings", "loaded",
                           "loading", "kind"}) {
    g_object_class_override_property(type, id++, name);
  }
}

bool getSlotProperty(const SlotCore& core, guint id, GValue* value) {
  switch (id) {
    case settingsId:
      g_value_set_object(value, core.settings());
      return true;
    case loadedId:
      g_value_set_boolean(value, core.isLoaded() ? TRUE : FALSE);
      return true;
    case loadingId:
      g_value_set_boolean(value, core.isLoading() ? TRUE : FALSE);
      return true;
    case kindId:
      g_value_set_enum(value, static_cast<int>(core.kind()));
      return true;
    default:
      if (id < domainId || id > queryId) return false;
      g_value_set_string(value, (core.address().*addressParts[id - domainId].second).c_str());
      return true;
  }
}

bool setSlotProperty(SlotCore& core, guint id, const GValue* value) {
  if (id == settingsId) {
    core.setSettings(static_cast<TavoAdsSlotSettings*>(g_value_get_object(value)));
    return true;
  }
  if (id < domainId || id > queryId) return false;
  const auto& [name, part] = addressParts[id - domainId];
  core.setAddress(part, name, g_value_get_string(value));
  return true;
}

}  // namespace tavo::gobject
