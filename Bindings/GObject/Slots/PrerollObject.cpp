#include "Slots/PrerollCore.h"
#include "Slots/SlotObject.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-preroll.h"

namespace gobject = tavo::gobject;
using gobject::PrerollCore;

struct _TavoAdsPreroll {
  GObject parent;
  PrerollCore* core;
};

static void tavo_ads_preroll_slot_init(TavoAdsSlotInterface* type) {
  type->core = [](TavoAdsSlot* self) -> gobject::SlotCore* { return TAVO_ADS_PREROLL(self)->core; };
}

G_DEFINE_FINAL_TYPE_WITH_CODE(TavoAdsPreroll, tavo_ads_preroll, G_TYPE_OBJECT,
                              G_IMPLEMENT_INTERFACE(TAVO_ADS_TYPE_SLOT, tavo_ads_preroll_slot_init))

namespace {

enum : guint { playerId = gobject::firstOwn };

guint finishedSignal;

void getPrerollProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const PrerollCore& core = *TAVO_ADS_PREROLL(object)->core;
  if (id == playerId) {
    g_value_set_object(value, core.player());
  } else if (!gobject::getSlotProperty(core, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

void setPrerollProperty(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  PrerollCore& core = *TAVO_ADS_PREROLL(object)->core;
  if (id != playerId) {
    if (!gobject::setSlotProperty(core, id, value)) {
      gobject::refuseProperty(object, id, pspec);
    }
    return;
  }
  auto* const player = static_cast<TavoAdsPlayer*>(g_value_get_object(value));
  if (player == core.player()) return;
  core.setPlayer(player);
  g_object_notify_by_pspec(object, pspec);
}

}  // namespace

static void tavo_ads_preroll_init(TavoAdsPreroll* self) {
  self->core = new PrerollCore{G_OBJECT(self), finishedSignal};
}

static void tavo_ads_preroll_dispose(GObject* self) {
  if (gobject::disposesOnMainThread(self)) return;
  TAVO_ADS_PREROLL(self)->core->retire();
  G_OBJECT_CLASS(tavo_ads_preroll_parent_class)->dispose(self);
}

static void tavo_ads_preroll_finalize(GObject* self) {
  delete TAVO_ADS_PREROLL(self)->core;
  G_OBJECT_CLASS(tavo_ads_preroll_parent_class)->finalize(self);
}

static void tavo_ads_preroll_class_init(TavoAdsPrerollClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->dispose = tavo_ads_preroll_dispose;
  object->finalize = tavo_ads_preroll_finalize;
  object->get_property = &getPrerollProperty;
  object->set_property = &setPrerollProperty;
  gobject::overrideSlotProperties(object);
  g_object_class_install_property(
      object, playerId,
      g_param_spec_object("player", nullptr, nullptr, TAVO_ADS_TYPE_PLAYER,
                          gobject::propertyFlags));
  finishedSignal = g_signal_new("finished", TAVO_ADS_TYPE_PREROLL, G_SIGNAL_RUN_LAST, 0, nullptr,
                                nullptr, nullptr, G_TYPE_NONE, 0);
}

TavoAdsPreroll* tavo_ads_preroll_new(TavoAdsPlayer* player) {
  g_return_val_if_fail(player == nullptr || TAVO_ADS_IS_PLAYER(player), nullptr);
  return TAVO_ADS_PREROLL(g_object_new(TAVO_ADS_TYPE_PREROLL, "player", player, nullptr));
}
