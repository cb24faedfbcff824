#include <functional>
#include <utility>

#include <tavo/AdNetworkClasses.h>
#include <tavo/CVAdDelegate.h>
#include <tavo/CVBannerAdView.h>
#include <tavo/CVInterstitialAd.h>

#include "Networks/NetworkAdRecord.h"
#include "Networks/NetworkAdapter.h"
#include "Settings/Conversions.h"
#include "Support/Errors.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-network-ad.h"

namespace gobject = tavo::gobject;
using gobject::NetworkAdRecord;
using gobject::Process;
using gobject::Ref;
using tavo::CVAd;
using tavo::CVAdDelegate;

struct TavoAdsNetworkAdPrivate {
  NetworkAdRecord* record;
};

G_DEFINE_ABSTRACT_TYPE_WITH_PRIVATE(TavoAdsNetworkAd, tavo_ads_network_ad, G_TYPE_OBJECT)

namespace {

enum : guint {
  placementId = 1,
  interstitialId,
  widthId,
  heightId,
  outsideId,
  ageId,
  genderId,
  keywordsId,
  locationId,
  widgetId,
};

void getNetworkProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const NetworkAdRecord& record = gobject::recordOf(TAVO_ADS_NETWORK_AD(object));
  switch (id) {
    case placementId:
      return g_value_set_string(value, record.placementId.c_str());
    case interstitialId:
      return g_value_set_boolean(value, record.isInterstitial ? TRUE : FALSE);
    case widthId:
      return g_value_set_double(value, record.size.width);
    case heightId:
      return g_value_set_double(value, record.size.height);
    case outsideId:
      return g_value_set_boolean(value, record.opensOutside ? TRUE : FALSE);
    case ageId:
      return g_value_set_int(value, record.age);
    case genderId:
      return g_value_set_int(value, record.gender);
    case keywordsId:
      return g_value_set_variant(value, gobject::variantOf(record.keywords));
    case locationId:
      return g_value_set_variant(value, gobject::variantOf(record.location));
    case widgetId:
      return g_value_set_object(value, record.widget.get());
    default:
      gobject::refuseProperty(object, id, pspec);
  }
}

void setNetworkProperty(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  if (id != widgetId) return gobject::refuseProperty(object, id, pspec);
  NetworkAdRecord& record = gobject::recordOf(TAVO_ADS_NETWORK_AD(object));
  auto* const widget = static_cast<GtkWidget*>(g_value_get_object(value));
  if (widget == record.widget.get()) return;
  record.widget = Ref<GtkWidget>::share(widget);
  g_object_notify_by_pspec(object, pspec);
}

void installNetworkProperties(GObjectClass* object) {
  constexpr auto flags = gobject::readOnlyFlags;
  const auto install = [object](guint id, GParamSpec* pspec) {
    g_object_class_install_property(object, id, pspec);
  };
  constexpr double widest = 8'192;
  constexpr int oldest = 150;
  install(placementId, g_param_spec_string("placement-id", nullptr, nullptr, "", flags));
  install(interstitialId, g_param_spec_boolean("interstitial", nullptr, nullptr, FALSE, flags));
  install(widthId, g_param_spec_double("width", nullptr, nullptr, 0, widest, 0, flags));
  install(heightId, g_param_spec_double("height", nullptr, nullptr, 0, widest, 0, flags));
  install(outsideId, g_param_spec_boolean("open-pages-outside", nullptr, nullptr, FALSE, flags));
  install(ageId, g_param_spec_int("age", nullptr, nullptr, -1, oldest, -1, flags));
  install(genderId, g_param_spec_int("gender", nullptr, nullptr, 0, 2, 0, flags));
  install(keywordsId, g_param_spec_variant("keywords", nullptr, nullptr, G_VARIANT_TYPE("a{ss}"),
                                           nullptr, flags));
  install(locationId, g_param_spec_variant("location", nullptr, nullptr, G_VARIANT_TYPE("(ddd)"),
                                           nullptr, flags));
  install(widgetId,
          g_param_spec_object("widget", nullptr, nullptr, GTK_TYPE_WIDGET, gobject::propertyFlags));
}

// Runs on the main thread, at once where it is this one. The ad is passed over when the library has
// let go of it meanwhile.
void report(TavoAdsNetworkAd* self, std::function<void(CVAdDelegate&, CVAd&)> news) {
  struct Report {
    Ref<TavoAdsNetworkAd> self;
    std::function<void(CVAdDelegate&, CVAd&)> news;
  };
  auto* const task = new Report{Ref<TavoAdsNetworkAd>::share(self), std::move(news)};
  const auto run = +[](gpointer data) {
    const std::unique_ptr<Report> own{static_cast<Report*>(data)};
    const NetworkAdRecord& record = gobject::recordOf(own->self.get());
    const auto delegate = record.delegate.lock();
    if (delegate && record.ad != nullptr) own->news(*delegate, *record.ad);
  };
  if (Process::isMainThread()) return run(task);
  g_idle_add_once(run, task);
}

bool isNetworkClass(GType type) {
  return g_type_is_a(type, TAVO_ADS_TYPE_NETWORK_AD) && !G_TYPE_IS_ABSTRACT(type);
}

bool isNone(GType type) { return type == G_TYPE_NONE || type == G_TYPE_INVALID; }

void registerType(const char* name, GType type, std::shared_ptr<CVAd> (*make)(GType)) {
  tavo::AdNetworkClasses::Factory factory;
  if (!isNone(type)) {
    factory = [type, make] { return make(type); };
  }
  tavo::AdNetworkClasses::sharedInstance().registerClass(name, std::move(factory));
}

}  // namespace

static void tavo_ads_network_ad_init(TavoAdsNetworkAd* self) {
  auto* const own =
      static_cast<TavoAdsNetworkAdPrivate*>(tavo_ads_network_ad_get_instance_private(self));
  own->record = new NetworkAdRecord;
}

static void tavo_ads_network_ad_finalize(GObject* self) {
  delete &gobject::recordOf(TAVO_ADS_NETWORK_AD(self));
  G_OBJECT_CLASS(tavo_ads_network_ad_parent_class)->finalize(self);
}

static void tavo_ads_network_ad_dispose(GObject* self) {
  if (gobject::disposesOnMainThread(self)) return;
  gobject::recordOf(TAVO_ADS_NETWORK_AD(self)).widget = {};
  G_OBJECT_CLASS(tavo_ads_network_ad_parent_class)->dispose(self);
}

static void tavo_ads_network_ad_class_init(TavoAdsNetworkAdClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->dispose = tavo_ads_network_ad_dispose;
  object->finalize = tavo_ads_network_ad_finalize;
  object->get_property = &getNetworkProperty;
  object->set_property = &setNetworkProperty;
  installNetworkProperties(object);
}

void tavo_ads_network_ad_received(TavoAdsNetworkAd* self) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  report(self, [self](CVAdDelegate& delegate, CVAd& ad) {
    const NetworkAdRecord& record = gobject::recordOf(self);
    if (!record.isInterstitial) {
      if (!record.widget || gtk_widget_get_parent(record.widget.get()) != nullptr) {
        return delegate.adRequestFailedWithError(
            ad, {"network", TAVO_ADS_ERROR_NETWORK,
                 "The network's ad needs a widget without a parent."});
      }
      gobject::showNetworkWidget(ad, record.widget.get());
    }
    delegate.adDidReceiveAd(ad);
  });
}

void tavo_ads_network_ad_failed(TavoAdsNetworkAd* self, int code, const char* message) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  report(self, [code, text = gobject::textOf(message)](CVAdDelegate& delegate, CVAd& ad) {
    delegate.adRequestFailedWithError(ad, {"network", code, text});
  });
}

void tavo_ads_network_ad_clicked(TavoAdsNetworkAd* self) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adWasClicked(ad); });
}

void tavo_ads_network_ad_opened(TavoAdsNetworkAd* self) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adWillPresent(ad); });
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adDidPresent(ad); });
}

void tavo_ads_network_ad_closed(TavoAdsNetworkAd* self) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  const auto held = Ref<TavoAdsNetworkAd>::share(self);
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adWillClose(ad); });
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adDidClose(ad); });
}

void tavo_ads_network_ad_leaves_application(TavoAdsNetworkAd* self) {
  g_return_if_fail(TAVO_ADS_IS_NETWORK_AD(self));
  report(self, [](CVAdDelegate& delegate, CVAd& ad) { delegate.adWillLeaveApplication(ad); });
}

gboolean tavo_ads_register_network(GType banner_type, GType interstitial_type, GError** error) {
  if (!Process::isUsable(error)) return FALSE;
  for (const GType type : {banner_type, interstitial_type}) {
    if (isNone(type) || isNetworkClass(type)) continue;
    g_set_error(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_INVALID_ARGUMENT,
                "%s is not derived from TavoAdsNetworkAd, or is abstract.", g_type_name(type));
    return FALSE;
  }
  registerType(tavo::CVBannerAdView::className, banner_type, &gobject::makeNetworkBanner);
  registerType(tavo::CVInterstitialAd::className, interstitial_type,
               &gobject::makeNetworkInterstitial);
  return TRUE;
}

namespace tavo::gobject {

NetworkAdRecord& recordOf(TavoAdsNetworkAd* ad) {
  return *static_cast<TavoAdsNetworkAdPrivate*>(tavo_ads_network_ad_get_instance_private(ad))
              ->record;
}

}  // namespace tavo::gobject
