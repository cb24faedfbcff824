#include "Settings/SlotSettingsObject.h"

#include "Settings/Conversions.h"
#include "Support/Pointers.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-enum-types.h"

using tavo::XAdSlotConfiguration;
namespace gobject = tavo::gobject;

namespace tavo::gobject {

struct SettingsRecord {
  std::shared_ptr<XAdSlotConfiguration> slot = std::make_shared<XAdSlotConfiguration>();
  Ref<GdkTexture> background;
};

}  // namespace tavo::gobject

using gobject::SettingsRecord;

namespace {

using Slot = XAdSlotConfiguration;
using gobject::choice;
using gobject::property;

constexpr double longestRefresh = 1e6;
constexpr double widestAd = 8'192;
constexpr double oldest = 150;
constexpr double longestFilm = 1e9;

constexpr int highestBitrate = 1'000'000;

constexpr std::array slotTable{
    property<&Slot::standardsMode>("standards-mode"),
    property<&Slot::bannerRefreshInterval>("refresh-interval", 0, longestRefresh),
    property<&Slot::scalingAllowed>("scaling-allowed"),
    property<&Slot::maintainAspectRatio>("keep-aspect-ratio"),
    property<&Slot::COPPAPermissions>("child-directed"),
    property<&Slot::confinesPagesToServingSite>("confine-pages"),
    property<&Slot::RTBRequired>("real-time-bidding"),
    property<&Slot::shouldOpenClickThroughURLInAppBrowser>("open-pages-inside"),
    property<&Slot::canMediate>("can-mediate", -1, 1),
    property<&Slot::mediationPlacementId>("mediation-placement-id"),
    property<&Slot::mediationBannerWidth>("mediation-width", 0, widestAd),
    property<&Slot::mediationBannerHeight>("mediation-height", 0, widestAd),
    property<&Slot::mediationTargetedAge>("mediation-age", -1, oldest),
    property<&Slot::mediationTargetedGender>("mediation-gender", -1, 2),
    choice<&Slot::countdownTimerPosition>("countdown-position",
                                          &tavo_ads_countdown_position_get_type),
    property<&Slot::skipOffsetTime>("skip-offset", -1, longestFilm),
    choice<&Slot::skipOffsetType>("skip-unit", &tavo_ads_skip_unit_get_type),
    property<&Slot::dismissVideoOnClickThrough>("end-film-after-click"),
    property<&Slot::preferredVideoBitrate>("preferred-video-bitrate", 0, highestBitrate),
};
enum : guint { backgroundId = slotTable.size() + 1, keywordsId };

}  // namespace

struct _TavoAdsSlotSettings {
  GObject parent;
  SettingsRecord* record;
};

G_DEFINE_FINAL_TYPE(TavoAdsSlotSettings, tavo_ads_slot_settings, G_TYPE_OBJECT)

namespace {

void getSlotSetting(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const SettingsRecord& record = *TAVO_ADS_SLOT_SETTINGS(object)->record;
  if (id == backgroundId) {
    g_value_set_object(value, record.background.get());
  } else if (id == keywordsId) {
    g_value_set_variant(value, gobject::variantOf(record.slot->mediationTargetedKeywords));
  } else if (!gobject::readProperty(slotTable, *record.slot, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

void setSlotSetting(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  SettingsRecord& record = *TAVO_ADS_SLOT_SETTINGS(object)->record;
  if (id == backgroundId) {
    auto* const texture = static_cast<GdkTexture*>(g_value_get_object(value));
    if (texture == record.background.get()) return;
    record.background = gobject::Ref<GdkTexture>::share(texture);
    record.slot->backGroundImage = gobject::imageOf(texture);
    g_object_notify_by_pspec(object, pspec);
  } else if (id == keywordsId) {
    record.slot->mediationTargetedKeywords = gobject::keywordsOf(g_value_get_variant(value));
    g_object_notify_by_pspec(object, pspec);
  } else if (!gobject::writeProperty(slotTable, *record.slot, object, id, value, pspec)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

}  // namespace

static void tavo_ads_slot_settings_init(TavoAdsSlotSettings* self) {
  self->record = new SettingsRecord;
}

static void tavo_ads_slot_settings_class_init(TavoAdsSlotSettingsClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->finalize = [](GObject* self) {
    delete TAVO_ADS_SLOT_SETTINGS(self)->record;
    G_OBJECT_CLASS(tavo_ads_slot_settings_parent_class)->finalize(self);
  };
  object->get_property = &getSlotSetting;
  object->set_property = &setSlotSetting;
  gobject::installProperties(object, slotTable, XAdSlotConfiguration{});
  g_object_class_install_property(object, backgroundId,
                                  g_param_spec_object("background", nullptr, nullptr,
                                                      GDK_TYPE_TEXTURE, gobject::propertyFlags));
  g_object_class_install_property(
      object, keywordsId,
      g_param_spec_variant("mediation-keywords", nullptr, nullptr, G_VARIANT_TYPE("a{ss}"), nullptr,
                           gobject::propertyFlags));
}

TavoAdsSlotSettings* tavo_ads_slot_settings_new(void) {
  return TAVO_ADS_SLOT_SETTINGS(g_object_new(TAVO_ADS_TYPE_SLOT_SETTINGS, nullptr));
}

namespace tavo::gobject {

const std::shared_ptr<XAdSlotConfiguration>& recordOf(TavoAdsSlotSettings* settings) {
  return settings->record->slot;
}

}  // namespace tavo::gobject
