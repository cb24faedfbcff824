#include "Settings/LimitsObject.h"

#include "Support/Properties.h"

using tavo::Limits;
namespace gobject = tavo::gobject;

struct _TavoAdsLimits {
  GObject parent;
  Limits* limits;
};

G_DEFINE_FINAL_TYPE(TavoAdsLimits, tavo_ads_limits, G_TYPE_OBJECT)

namespace {

using gobject::property;

constexpr double longest = 1e9;  // seconds
constexpr double many = 1e6;
constexpr double largest = 1e12;  // bytes

constexpr std::array limitTable{
    property<&Limits::requestIdleTimeout>("request-idle-timeout", 0, longest),
    property<&Limits::requestDeadline>("request-deadline", 0, longest),
    property<&Limits::answerBytes>("answer-bytes", 0, largest),
    property<&Limits::answerDepth>("answer-depth", 0, many),
    property<&Limits::httpRedirects>("http-redirects", 0, many),
    property<&Limits::redirectAnswers>("redirect-answers", 0, many),
    property<&Limits::automaticRequestDistance>("automatic-request-distance", 0, longest),
    property<&Limits::cookiesPerAnswer>("cookies-per-answer", 0, many),
    property<&Limits::cookieBytes>("cookie-bytes", 0, largest),
    property<&Limits::cookiesPerDomain>("cookies-per-domain", 0, many),
    property<&Limits::cookies>("cookies", 0, many),
    property<&Limits::cookieLife>("cookie-life", 0, longest),
    property<&Limits::vastBytes>("vast-bytes", 0, largest),
    property<&Limits::vastNodes>("vast-nodes", 0, largest),
    property<&Limits::vastDepth>("vast-depth", 0, many),
    property<&Limits::vastWrappersInAd>("vast-wrappers-in-ad", 0, many),
    property<&Limits::wrapperTimeout>("wrapper-timeout", 0, longest),
    property<&Limits::wrapperChainBudget>("wrapper-chain-budget", 0, longest),
    property<&Limits::vastWrapperDepth>("vast-wrapper-depth", 0, many),
    property<&Limits::vastAdsInBreak>("vast-ads-in-break", 0, many),
    property<&Limits::vastAddresses>("vast-addresses", 0, many),
    property<&Limits::vastAddressBytes>("vast-address-bytes", 0, largest),
    property<&Limits::vastIcons>("vast-icons", 0, many),
    property<&Limits::vastMediaTries>("vast-media-tries", 0, many),
    property<&Limits::mediaProbeTimeout>("media-probe-timeout", 0, longest),
    property<&Limits::firstFrameTimeout>("first-frame-timeout", 0, longest),
    property<&Limits::stallTimeout>("stall-timeout", 0, longest),
    property<&Limits::clickThroughTimeout>("click-through-timeout", 0, longest),
    property<&Limits::pingTimeout>("ping-timeout", 0, longest),
    property<&Limits::queuedPingsPerHost>("queued-pings-per-host", 0, many),
    property<&Limits::queuedPings>("queued-pings", 0, many),
    property<&Limits::pingConnectionsPerHost>("ping-connections-per-host", 1, many),
    property<&Limits::pingConnections>("ping-connections", 1, many),
    property<&Limits::pictureBytes>("picture-bytes", 0, largest),
    property<&Limits::picturePixels>("picture-pixels", 0, largest),
    property<&Limits::webProcessMegabytes>("web-process-megabytes", 0, many),
    property<&Limits::webProcessPing>("web-process-ping", 0, longest),
    property<&Limits::webProcessWatch>("web-process-watch", 0, longest),
    property<&Limits::webProcessReloadsPerMinute>("web-process-reloads-per-minute", 0, many),
    property<&Limits::pagesPerWebProcess>("pages-per-web-process", 0, many),
    property<&Limits::pageTimeout>("page-timeout", 0, longest),
    property<&Limits::pageRefreshes>("page-refreshes", 0, many),
    property<&Limits::pageBytes>("page-bytes", 0, largest),
    property<&Limits::pageProcessorTime>("page-processor-time", 0, longest),
    property<&Limits::pageProcessorWindow>("page-processor-window", 0, longest),
    property<&Limits::pageProcessorTotal>("page-processor-total", 0, longest),
    property<&Limits::commandsPerSecond>("commands-per-second", 0, many),
    property<&Limits::commandBurst>("command-burst", 0, many),
    property<&Limits::leavingActionsPerSecond>("leaving-actions-per-second", 0, many),
    property<&Limits::leavingActionsNeedTap>("leaving-actions-need-tap"),
    property<&Limits::tapLifetime>("tap-lifetime", 0, longest),
    property<&Limits::widgetSide>("widget-side", 1, 16'000),
};

}  // namespace

static void tavo_ads_limits_init(TavoAdsLimits* self) { self->limits = new Limits; }

static void tavo_ads_limits_class_init(TavoAdsLimitsClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->finalize = [](GObject* self) {
    delete TAVO_ADS_LIMITS(self)->limits;
    G_OBJECT_CLASS(tavo_ads_limits_parent_class)->finalize(self);
  };
  object->get_property = [](GObject* self, guint id, GValue* value, GParamSpec* pspec) {
    if (!gobject::readProperty(limitTable, *TAVO_ADS_LIMITS(self)->limits, id, value)) {
      gobject::refuseProperty(self, id, pspec);
    }
  };
  object->set_property = [](GObject* self, guint id, const GValue* value, GParamSpec* pspec) {
    if (!gobject::writeProperty(limitTable, *TAVO_ADS_LIMITS(self)->limits, self, id, value,
                                pspec)) {
      gobject::refuseProperty(self, id, pspec);
    }
  };
  gobject::installProperties(object, limitTable, Limits{});
}

TavoAdsLimits* tavo_ads_limits_new(void) {
  return TAVO_ADS_LIMITS(g_object_new(TAVO_ADS_TYPE_LIMITS, nullptr));
}

void tavo_ads_limits_unload_heavy_ads(TavoAdsLimits* self) {
  g_return_if_fail(TAVO_ADS_IS_LIMITS(self));
  self->limits->unloadHeavyAds();
  g_object_freeze_notify(G_OBJECT(self));
  for (const char* name :
       {"page-bytes", "page-processor-time", "page-processor-window", "page-processor-total"}) {
    g_object_notify(G_OBJECT(self), name);
  }
  g_object_thaw_notify(G_OBJECT(self));
}

namespace tavo::gobject {

Limits limitsOf(TavoAdsLimits* limits) { return limits == nullptr ? Limits{} : *limits->limits; }

}  // namespace tavo::gobject
