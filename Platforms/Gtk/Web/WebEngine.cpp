#include "Gtk/Web/WebEngine.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Gtk/ForeignText.h"
#include "Gtk/Guarded.h"
#include "Gtk/Web/PageRefusals.h"

namespace tavo::gtk {
namespace {

using MemoryLimits = GOwned<WebKitMemoryPressureSettings, &webkit_memory_pressure_settings_free>;

// The engine starts to free memory at a third of the limit. It looks every 30 seconds: more often
// would keep a page that rests at work, and the limit itself is watched from outside.
GPtr<WebKitWebContext> makeContext(const Limits& limits) {
  const MemoryLimits memory{webkit_memory_pressure_settings_new()};
  const auto megabytes = std::clamp<std::size_t>(limits.webProcessMegabytes, 64, 1U << 20U);
  webkit_memory_pressure_settings_set_memory_limit(memory.get(), static_cast<guint>(megabytes));
  webkit_memory_pressure_settings_set_kill_threshold(memory.get(), 1.0);
  webkit_memory_pressure_settings_set_strict_threshold(memory.get(), 0.5);
  webkit_memory_pressure_settings_set_conservative_threshold(memory.get(), 0.33);
  auto context = GPtr<WebKitWebContext>::adopt(WEBKIT_WEB_CONTEXT(
      g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings", memory.get(), nullptr)));
  webkit_web_context_set_cache_model(context.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  webkit_web_context_set_spell_checking_enabled(context.get(), FALSE);
  return context;
}

// Would run on, or hold memory, outside the page and its limits.
constexpr std::array<std::string_view, 5> lastingFeatures{"ServiceWorkers", "SharedWorker",
                                                          "IndexedDBAPI", "CacheAPI", "Databases"};

template <std::size_t count>
void switchOff(WebKitSettings* settings, const std::array<std::string_view, count>& names) {
  using Features = GOwned<WebKitFeatureList, &webkit_feature_list_unref>;
  const Features all{webkit_settings_get_all_features()};
  for (gsize index = 0; index < webkit_feature_list_get_length(all.get()); ++index) {
    auto* const feature = webkit_feature_list_get(all.get(), index);
    const std::string_view name = webkit_feature_get_identifier(feature);
    if (std::find(names.begin(), names.end(), name) != names.end()) {
      webkit_settings_set_feature_enabled(settings, feature, FALSE);
    }
  }
}

}  // namespace

WebEngine::WebEngine(WebModuleServices services)
    : services_{std::move(services)},
      context_{makeContext(services_.limits)},
      session_{GPtr<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral())},
      cookies_{session_.get(), services_.cookies, services_.runLoop} {
  refuseDownloads(session_.get(), connections_);
}

WebKitNetworkSession* WebEngine::session(PageKind kind) {
  if (kind == PageKind::creative) return session_.get();
  if (!browserSession_) {
    browserSession_ = GPtr<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
    refuseDownloads(browserSession_.get(), connections_);
  }
  copyCookies(*services_.cookies, browserSession_.get());
  return browserSession_.get();
}

GPtr<WebKitSettings> WebEngine::makeSettings(PageKind kind) const {
  auto settings = GPtr<WebKitSettings>::adopt(webkit_settings_new_with_settings(
      "allow-modal-dialogs", FALSE,                      //
      "default-charset", "UTF-8",                        //
      "enable-back-forward-navigation-gestures", FALSE,  //
      "enable-fullscreen", FALSE,                        //
      "enable-media-stream", FALSE,                      //
      "enable-page-cache", FALSE,                        //
      "enable-webrtc", FALSE,                            //
      "javascript-can-access-clipboard", FALSE,          //
      "javascript-can-open-windows-automatically", FALSE, nullptr));
  if (kind == PageKind::creative) switchOff(settings.get(), lastingFeatures);
  return settings;
}

GPtr<WebKitWebsitePolicies> WebEngine::makePolicies(PageKind kind) const {
  const auto autoplay =
      kind == PageKind::creative ? WEBKIT_AUTOPLAY_ALLOW : WEBKIT_AUTOPLAY_ALLOW_WITHOUT_SOUND;
  return GPtr<WebKitWebsitePolicies>::adopt(
      webkit_website_policies_new_with_policies("autoplay", autoplay, nullptr));
}

void WebEngine::forgetStorage(std::function<void()> done) {
  using Done = std::function<void()>;
  constexpr auto kinds = static_cast<WebKitWebsiteDataTypes>(WEBKIT_WEBSITE_DATA_LOCAL_STORAGE |
                                                             WEBKIT_WEBSITE_DATA_SESSION_STORAGE);
  webkit_website_data_manager_clear(
      webkit_network_session_get_website_data_manager(session_.get()), kinds, 0, nullptr,
      [](GObject* manager, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Done> called{static_cast<Done*>(data)};
        webkit_website_data_manager_clear_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result,
                                                 nullptr);
        guarded(*called);
      },
      std::make_unique<Done>(std::move(done)).release());
}

std::string WebEngine::userAgent() const {
  const auto settings = makeSettings(PageKind::creative);
  return textOf(webkit_settings_get_user_agent(settings.get()));
}

void WebEngine::forgetHistory(WebKitWebView* view) {
  const auto length =
      webkit_back_forward_list_get_length(webkit_web_view_get_back_forward_list(view));
  if (!blankHistory_ && length == 1) {
    blankHistory_.reset(webkit_web_view_get_session_state(view));
  } else if (blankHistory_) {
    webkit_web_view_restore_session_state(view, blankHistory_.get());
  }
}

}  // namespace tavo::gtk
