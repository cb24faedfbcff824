#include <gdk/gdk.h>

#include <algorithm>
#include <array>
#include <memory>

#include <tavo/AppStoreConfiguration.h>
#include <tavo/XGlobalConfiguration.h>

#include "Settings/Conversions.h"
#include "Support/Pointers.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-settings.h"

using tavo::AppStoreConfiguration;
using tavo::XBrowserConfiguration;
using tavo::XGlobalConfiguration;
namespace gobject = tavo::gobject;

struct _TavoAdsSettings {
  GObject parent;
};

G_DEFINE_FINAL_TYPE(TavoAdsSettings, tavo_ads_settings, G_TYPE_OBJECT)

namespace {

enum : guint {
  canMediateId = 1,
  debugLogsId,
  locationId,
  storeHostsId,
  storePagePrefixId,
  barAtTopId,
  barColorId,
  barImageId,
  standardsModeId,
  firstConsentId,
};

using Consent = tavo::ConsentStrings;
constexpr std::array consentTable{
    gobject::property<&Consent::gdprConsent>("gdpr-consent"),
    gobject::property<&Consent::gppString>("gpp-string"),
    gobject::property<&Consent::gppSectionId>("gpp-section-id"),
    gobject::property<&Consent::regulations>("regulations"),
    gobject::property<&Consent::limitAdTracking>("limit-ad-tracking"),
};
constexpr guint lastId = firstConsentId + consentTable.size() - 1;

// The place of a consent text in its table, from 1; 0: another property.
constexpr guint placeOfConsent(guint id) {
  return id < firstConsentId ? 0 : id - firstConsentId + 1;
}

constexpr unsigned barAtTop = 0;
constexpr unsigned barAtBottom = 1;

GStrv storeHosts() {
  GStrvBuilder* const builder = g_strv_builder_new();
  for (const auto& host : AppStoreConfiguration::sharedInstance().hosts) {
    if (!host.empty()) g_strv_builder_add(builder, host.c_str());
  }
  const GStrv hosts = g_strv_builder_end(builder);
  g_strv_builder_unref(builder);
  return hosts;
}

void setStoreHosts(const char* const* names) {
  auto& hosts = AppStoreConfiguration::sharedInstance().hosts;
  for (auto& host : hosts) {
    host = names != nullptr && *names != nullptr ? *names++ : "";
  }
  if (names != nullptr && *names != nullptr) {
    g_critical("TavoAdsSettings:store-hosts has room for %zu hosts.", hosts.size());
  }
}

void readColor(GValue* value) {
  const auto& color = XGlobalConfiguration::sharedInstance().browserConfiguration->toolbarBGColor;
  if (!color) return;
  const GdkRGBA rgba{color->red, color->green, color->blue, color->alpha};
  g_value_set_boxed(value, &rgba);
}

void getSetting(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  if (!gobject::Process::isUsable("TavoAdsSettings")) return;
  auto& global = XGlobalConfiguration::sharedInstance();
  const XBrowserConfiguration& browser = *global.browserConfiguration;
  switch (id) {
    case canMediateId:
      return g_value_set_int(value, global.canMediate);
    case debugLogsId:
      return g_value_set_boolean(value, global.enableDebugLogs ? TRUE : FALSE);
    case locationId:
      return g_value_set_variant(value, gobject::variantOf(global.mediationTargetedLocation));
    case storeHostsId:
      return g_value_take_boxed(value, storeHosts());
    case storePagePrefixId:
      return g_value_set_string(value,
                                AppStoreConfiguration::sharedInstance().productPagePrefix.c_str());
    case barAtTopId:
      return g_value_set_boolean(value, browser.toolbarPosition == barAtTop ? TRUE : FALSE);
    case barColorId:
      return readColor(value);
    case barImageId:
      return g_value_set_string(value, gobject::textOrNull(browser.toolbarBGImageName));
    case standardsModeId:
      return g_value_set_boolean(value, global.standardsMode ? TRUE : FALSE);
    default:
      if (!gobject::readProperty(consentTable, global.consent, placeOfConsent(id), value)) {
        gobject::refuseProperty(object, id, pspec);
      }
  }
}

void writeSetting(guint id, const GValue* value) {
  auto& global = XGlobalConfiguration::sharedInstance();
  XBrowserConfiguration& browser = *global.browserConfiguration;
  if (id == canMediateId) {
    global.canMediate = g_value_get_int(value);
  } else if (id == debugLogsId) {
    global.enableDebugLogs = g_value_get_boolean(value) != FALSE;
  } else if (id == locationId) {
    global.mediationTargetedLocation = gobject::locationOf(g_value_get_variant(value));
  } else if (id == storeHostsId) {
    setStoreHosts(static_cast<const char* const*>(g_value_get_boxed(value)));
  } else if (id == storePagePrefixId) {
    AppStoreConfiguration::sharedInstance().productPagePrefix =
        gobject::textOf(g_value_get_string(value));
  } else if (id == barAtTopId) {
    browser.toolbarPosition = g_value_get_boolean(value) != FALSE ? barAtTop : barAtBottom;
  } else if (id == barImageId) {
    browser.toolbarBGImageName = gobject::fieldOf<std::optional<std::string>>(value);
  } else if (id == barColorId) {
    const auto* rgba = static_cast<const GdkRGBA*>(g_value_get_boxed(value));
    browser.toolbarBGColor.reset();
    if (rgba != nullptr) {
      browser.toolbarBGColor = tavo::Color{rgba->red, rgba->green, rgba->blue, rgba->alpha};
    }
  } else if (id == standardsModeId) {
    global.standardsMode = g_value_get_boolean(value) != FALSE;
  } else {
    consentTable.at(placeOfConsent(id) - 1).set(global.consent, value);
  }
}

void setSetting(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  if (!gobject::Process::isUsable("TavoAdsSettings")) return;
  if (id < canMediateId || id > lastId) {
    return gobject::refuseProperty(object, id, pspec);
  }
  writeSetting(id, value);
  g_object_notify_by_pspec(object, pspec);
}

}  // namespace

static void tavo_ads_settings_init(TavoAdsSettings*) {}

static void tavo_ads_settings_class_init(TavoAdsSettingsClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->get_property = &getSetting;
  object->set_property = &setSetting;
  const auto install = [object](guint id, GParamSpec* pspec) {
    g_object_class_install_property(object, id, pspec);
  };
  constexpr auto flags = gobject::propertyFlags;
  install(canMediateId, g_param_spec_int("can-mediate", nullptr, nullptr, -1, 1, -1, flags));
  install(debugLogsId, g_param_spec_boolean("debug-logs", nullptr, nullptr, FALSE, flags));
  install(locationId, g_param_spec_variant("location", nullptr, nullptr, G_VARIANT_TYPE("(ddd)"),
                                           nullptr, flags));
  install(storeHostsId, g_param_spec_boxed("store-hosts", nullptr, nullptr, G_TYPE_STRV, flags));
  install(storePagePrefixId,
          g_param_spec_string("store-page-prefix", nullptr, nullptr,
                              AppStoreConfiguration{}.productPagePrefix.c_str(), flags));
  install(barAtTopId, g_param_spec_boolean("browser-bar-at-top", nullptr, nullptr, FALSE, flags));
  install(barColorId,
          g_param_spec_boxed("browser-bar-color", nullptr, nullptr, GDK_TYPE_RGBA, flags));
  install(barImageId, g_param_spec_string("browser-bar-image", nullptr, nullptr, nullptr, flags));
  install(standardsModeId, g_param_spec_boolean("standards-mode", nullptr, nullptr, FALSE, flags));
  guint id = firstConsentId;
  for (const auto& row : consentTable) install(id++, row.pspec(row, Consent{}));
}

TavoAdsSettings* tavo_ads_settings_get_default(void) {
  static TavoAdsSettings* only = nullptr;
  if (!gobject::Process::isUsable(__func__)) return nullptr;
  if (only == nullptr) only = TAVO_ADS_SETTINGS(g_object_new(TAVO_ADS_TYPE_SETTINGS, nullptr));
  return only;
}

void tavo_ads_settings_set_browser_button_image(TavoAdsSettings* self, TavoAdsBrowserButton button,
                                                const char* image_name) {
  g_return_if_fail(TAVO_ADS_IS_SETTINGS(self));
  if (!gobject::Process::isUsable(__func__)) return;
  XGlobalConfiguration::sharedInstance().browserConfiguration->setToolbarButton(
      button, gobject::textOf(image_name));
}

void tavo_ads_settings_set_browser_button_visible(TavoAdsSettings* self,
                                                  TavoAdsBrowserButton button, gboolean visible) {
  g_return_if_fail(TAVO_ADS_IS_SETTINGS(self));
  if (!gobject::Process::isUsable(__func__)) return;
  XGlobalConfiguration::sharedInstance().browserConfiguration->hideToolbarButton(button, !visible);
}
