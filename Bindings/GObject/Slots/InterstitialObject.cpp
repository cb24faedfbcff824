#include "Slots/InterstitialCore.h"
#include "Slots/SlotObject.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-interstitial.h"

namespace gobject = tavo::gobject;
using gobject::InterstitialCore;

struct _TavoAdsInterstitial {
  GObject parent;
  InterstitialCore* core;
};

static void tavo_ads_interstitial_slot_init(TavoAdsSlotInterface* type) {
  type->core = [](TavoAdsSlot* self) -> gobject::SlotCore* {
    return TAVO_ADS_INTERSTITIAL(self)->core;
  };
}

G_DEFINE_FINAL_TYPE_WITH_CODE(TavoAdsInterstitial, tavo_ads_interstitial, G_TYPE_OBJECT,
                              G_IMPLEMENT_INTERFACE(TAVO_ADS_TYPE_SLOT,
                                                    tavo_ads_interstitial_slot_init))

namespace {

enum : guint { presentedId = gobject::firstOwn };

guint dismissedSignal;

void getInterstitialProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const InterstitialCore& core = *TAVO_ADS_INTERSTITIAL(object)->core;
  if (id == presentedId) {
    g_value_set_boolean(value, core.isPresented() ? TRUE : FALSE);
  } else if (!gobject::getSlotProperty(core, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

void setInterstitialProperty(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  if (!gobject::setSlotProperty(*TAVO_ADS_INTERSTITIAL(object)->core, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

}  // namespace

static void tavo_ads_interstitial_init(TavoAdsInterstitial* self) {
  self->core = new InterstitialCore{G_OBJECT(self), dismissedSignal};
}

static void tavo_ads_interstitial_dispose(GObject* self) {
  if (gobject::disposesOnMainThread(self)) return;
  TAVO_ADS_INTERSTITIAL(self)->core->retire();
  G_OBJECT_CLASS(tavo_ads_interstitial_parent_class)->dispose(self);
}

static void tavo_ads_interstitial_finalize(GObject* self) {
  delete TAVO_ADS_INTERSTITIAL(self)->core;
  G_OBJECT_CLASS(tavo_ads_interstitial_parent_class)->finalize(self);
}

static void tavo_ads_interstitial_class_init(TavoAdsInterstitialClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->dispose = tavo_ads_interstitial_dispose;
  object->finalize = tavo_ads_interstitial_finalize;
  object->get_property = &getInterstitialProperty;
  object->set_property = &setInterstitialProperty;
  gobject::overrideSlotProperties(object);
  g_object_class_install_property(
      object, presentedId,
      g_param_spec_boolean("presented", nullptr, nullptr, FALSE, gobject::readOnlyFlags));
  dismissedSignal = g_signal_new("dismissed", TAVO_ADS_TYPE_INTERSTITIAL, G_SIGNAL_RUN_LAST, 0,
                                 nullptr, nullptr, nullptr, G_TYPE_NONE, 0);
}

TavoAdsInterstitial* tavo_ads_interstitial_new(void) {
  return TAVO_ADS_INTERSTITIAL(g_object_new(TAVO_ADS_TYPE_INTERSTITIAL, nullptr));
}

gboolean tavo_ads_interstitial_present(TavoAdsInterstitial* self, GtkWindow* window,
                                       GError** error) {
  g_return_val_if_fail(TAVO_ADS_IS_INTERSTITIAL(self), FALSE);
  g_return_val_if_fail(GTK_IS_WINDOW(window), FALSE);
  return self->core->present(window, error) ? TRUE : FALSE;
}

void tavo_ads_interstitial_close(TavoAdsInterstitial* self) {
  g_return_if_fail(TAVO_ADS_IS_INTERSTITIAL(self));
  if (gobject::Process::isOnMainThread(__func__)) self->core->close();
}
