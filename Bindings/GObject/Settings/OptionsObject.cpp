#include "Settings/OptionsObject.h"

#include "Settings/LimitsObject.h"
#include "Support/Pointers.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-enum-types.h"
#include "tavo-ads/tavo-ads-init.h"

using tavo::gtk::GtkPlatformOptions;
namespace gobject = tavo::gobject;

namespace tavo::gobject {

struct OptionsRecord {
  GtkPlatformOptions options;
  Ref<TavoAdsLimits> limits;
};

}  // namespace tavo::gobject

using gobject::OptionsRecord;

namespace {

constexpr std::array optionTable{
    gobject::property<&GtkPlatformOptions::applicationId>("application-id"),
    gobject::property<&GtkPlatformOptions::applicationVersion>("application-version"),
    gobject::property<&GtkPlatformOptions::dataFolder>("data-folder"),
    gobject::property<&GtkPlatformOptions::resourceFolder>("resource-folder"),
    gobject::property<&GtkPlatformOptions::moduleFolder>("module-folder"),
    gobject::property<&GtkPlatformOptions::libraryResourceFolder>("library-resource-folder"),
    gobject::property<&GtkPlatformOptions::assumeReachable>("assume-reachable"),
    gobject::property<&GtkPlatformOptions::adNetworkLibrary>("ad-network-library"),
    gobject::choice<&GtkPlatformOptions::orientationFit>("orientation-fit",
                                                         &tavo_ads_orientation_fit_get_type),
};
constexpr guint limitsId = optionTable.size() + 1;

}  // namespace

struct _TavoAdsOptions {
  GObject parent;
  OptionsRecord* record;
};

G_DEFINE_FINAL_TYPE(TavoAdsOptions, tavo_ads_options, G_TYPE_OBJECT)

namespace {

void getOption(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const OptionsRecord& record = *TAVO_ADS_OPTIONS(object)->record;
  if (id == limitsId) {
    g_value_set_object(value, record.limits.get());
  } else if (!gobject::readProperty(optionTable, record.options, id, value)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

void setOption(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  OptionsRecord& record = *TAVO_ADS_OPTIONS(object)->record;
  if (id == limitsId) {
    auto limits =
        gobject::Ref<TavoAdsLimits>::share(static_cast<TavoAdsLimits*>(g_value_get_object(value)));
    if (limits.get() == record.limits.get()) return;
    record.limits = std::move(limits);
    g_object_notify_by_pspec(object, pspec);
  } else if (!gobject::writeProperty(optionTable, record.options, object, id, value, pspec)) {
    gobject::refuseProperty(object, id, pspec);
  }
}

}  // namespace

static void tavo_ads_options_init(TavoAdsOptions* self) { self->record = new OptionsRecord; }

static void tavo_ads_options_class_init(TavoAdsOptionsClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->finalize = [](GObject* self) {
    delete TAVO_ADS_OPTIONS(self)->record;
    G_OBJECT_CLASS(tavo_ads_options_parent_class)->finalize(self);
  };
  object->get_property = &getOption;
  object->set_property = &setOption;
  gobject::installProperties(object, optionTable, GtkPlatformOptions{});
  g_object_class_install_property(
      object, limitsId,
      g_param_spec_object("limits", nullptr, nullptr, TAVO_ADS_TYPE_LIMITS,
                          gobject::propertyFlags));
}

TavoAdsOptions* tavo_ads_options_new(const char* application_id) {
  return TAVO_ADS_OPTIONS(
      g_object_new(TAVO_ADS_TYPE_OPTIONS, "application-id", application_id, nullptr));
}

gboolean tavo_ads_init(const char* application_id, GError** error) {
  return gobject::Process::start({.applicationId = gobject::textOf(application_id)}, error) ? TRUE
                                                                                            : FALSE;
}

gboolean tavo_ads_init_with_options(TavoAdsOptions* options, GError** error) {
  g_return_val_if_fail(TAVO_ADS_IS_OPTIONS(options), FALSE);
  return gobject::Process::start(gobject::optionsOf(options), error) ? TRUE : FALSE;
}

gboolean tavo_ads_is_initialized(void) { return gobject::Process::isRunning() ? TRUE : FALSE; }

const char* tavo_ads_get_version(void) { return TAVO_ADS_LIBRARY_VERSION; }

namespace tavo::gobject {

GtkPlatformOptions optionsOf(TavoAdsOptions* options) {
  GtkPlatformOptions all = options->record->options;
  all.limits = limitsOf(options->record->limits.get());
  return all;
}

}  // namespace tavo::gobject
