#include "Slots/BannerCore.h"
#include "Slots/SlotObject.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-banner.h"

namespace gobject = tavo::gobject;
using gobject::BannerCore;

struct _TavoAdsBanner {
  GtkWidget parent;
  BannerCore* core;
};

static void tavo_ads_banner_slot_init(TavoAdsSlotInterface* type) {
  type->core = [](TavoAdsSlot* self) -> gobject::SlotCore* { return TAVO_ADS_BANNER(self)->core; };
}

G_DEFINE_FINAL_TYPE_WITH_CODE(TavoAdsBanner, tavo_ads_banner, GTK_TYPE_WIDGET,
                              G_IMPLEMENT_INTERFACE(TAVO_ADS_TYPE_SLOT, tavo_ads_banner_slot_init))

namespace {

enum : guint { widthId = gobject::firstOwn, heightId, expandedId, mediatedId };

constexpr double widestBanner = 8'192;
constexpr double bannerWidth = 320;
constexpr double bannerHeight = 50;

BannerCore::Signals bannerSignals;

BannerCore& coreOf(gpointer self) { return *TAVO_ADS_BANNER(self)->core; }

void measureBanner(GtkWidget* widget, GtkOrientation orientation, int, int* minimum, int* natural,
                   int* minimumBaseline, int* naturalBaseline) {
  const tavo::Size& size = coreOf(widget).size();
  const double length = orientation == GTK_ORIENTATION_HORIZONTAL ? size.width : size.height;
  *minimum = *natural = static_cast<int>(length);
  *minimumBaseline = *naturalBaseline = -1;
  // Whoever gives a size must have asked for it.
  if (GtkWidget* const child = coreOf(widget).child()) {
    gtk_widget_measure(child, orientation, -1, minimum, natural, nullptr, nullptr);
  }
}

void allocateBanner(GtkWidget* widget, int width, int height, int baseline) {
  GtkWidget* const child = coreOf(widget).child();
  if (child != nullptr) gtk_widget_allocate(child, width, height, baseline, nullptr);
}

void getBannerProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const BannerCore& core = coreOf(object);
  if (id == widthId || id == heightId) {
    g_value_set_double(value, id == widthId ? core.size().width : core.size().height);
  } else if (id == expandedId) {
    g_value_set_boolean(value, core.isExpanded() ? TRUE : FALSE);
  } else if (id == mediatedId) {
    g_value_set_boolean(value, core.isMediated() ? TRUE : FALSE);
  } else if (!gobject::getSlotProperty(core, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

void setBannerProperty(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  if (id != widthId && id != heightId) {
    if (!gobject::setSlotProperty(coreOf(object), id, value)) {
      gobject::refuseProperty(object, id, pspec);
    }
    return;
  }
  tavo::Size size = coreOf(object).size();
  double& side = id == widthId ? size.width : size.height;
  if (side == g_value_get_double(value)) return;
  side = g_value_get_double(value);
  coreOf(object).setSize(size);
  g_object_notify_by_pspec(object, pspec);
}

guint newBannerSignal(const char* name) {
  return g_signal_new(name, TAVO_ADS_TYPE_BANNER, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                      G_TYPE_NONE, 0);
}

void installBannerProperties(GObjectClass* object) {
  gobject::overrideSlotProperties(object);
  g_object_class_install_property(object, widthId,
                                  g_param_spec_double("ad-width", nullptr, nullptr, 0, widestBanner,
                                                      bannerWidth, gobject::propertyFlags));
  g_object_class_install_property(
      object, heightId,
      g_param_spec_double("ad-height", nullptr, nullptr, 0, widestBanner, bannerHeight,
                          gobject::propertyFlags));
  g_object_class_install_property(
      object, expandedId,
      g_param_spec_boolean("expanded", nullptr, nullptr, FALSE, gobject::readOnlyFlags));
  g_object_class_install_property(
      object, mediatedId,
      g_param_spec_boolean("mediated", nullptr, nullptr, FALSE, gobject::readOnlyFlags));
}

}  // namespace

static void tavo_ads_banner_init(TavoAdsBanner* self) {
  self->core = new BannerCore{GTK_WIDGET(self), bannerSignals};
  gtk_widget_set_overflow(GTK_WIDGET(self), GTK_OVERFLOW_HIDDEN);
}

static void tavo_ads_banner_dispose(GObject* self) {
  if (gobject::disposesOnMainThread(self)) return;
  coreOf(self).retire();
  G_OBJECT_CLASS(tavo_ads_banner_parent_class)->dispose(self);
}

static void tavo_ads_banner_finalize(GObject* self) {
  delete TAVO_ADS_BANNER(self)->core;
  G_OBJECT_CLASS(tavo_ads_banner_parent_class)->finalize(self);
}

static void tavo_ads_banner_class_init(TavoAdsBannerClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->dispose = tavo_ads_banner_dispose;
  object->finalize = tavo_ads_banner_finalize;
  object->get_property = &getBannerProperty;
  object->set_property = &setBannerProperty;
  GtkWidgetClass* const widget = GTK_WIDGET_CLASS(type);
  widget->measure = &measureBanner;
  widget->size_allocate = &allocateBanner;
  gtk_widget_class_set_css_name(widget, "tavoadsbanner");
  installBannerProperties(object);
  bannerSignals = {newBannerSignal("expanded"), newBannerSignal("collapsed"),
                   newBannerSignal("film-dismissed")};
}

GtkWidget* tavo_ads_banner_new(void) {
  return GTK_WIDGET(g_object_new(TAVO_ADS_TYPE_BANNER, nullptr));
}

void tavo_ads_banner_refresh(TavoAdsBanner* self) {
  g_return_if_fail(TAVO_ADS_IS_BANNER(self));
  if (gobject::Process::isUsable(__func__)) coreOf(self).refresh();
}

gboolean tavo_ads_banner_get_expanded(TavoAdsBanner* self) {
  g_return_val_if_fail(TAVO_ADS_IS_BANNER(self), FALSE);
  return coreOf(self).isExpanded() ? TRUE : FALSE;
}

void tavo_ads_banner_collapse(TavoAdsBanner* self) {
  g_return_if_fail(TAVO_ADS_IS_BANNER(self));
  if (gobject::Process::isUsable(__func__)) coreOf(self).collapse();
}
