#include "Gtk/Web/WebEngine.h"

#include <algorithm>

#include "Gtk/ForeignText.h"
#include "Gtk/Web/PageRefusals.h"

namespace tavo::gtk {
namespace {

using MemoryLimits = GOwned<WebKitMemoryPressureSettings, &webkit_memory_pressure_settings_free>;

// The engine starts to free memory at a third of the limit and ends the process at the limit.
GPtr<WebKitWebContext> makeContext(const Limits& limits) {
  const MemoryLimits memory{webkit_memory_pressure_settings_new()};
  const auto megabytes = std::clamp<std::size_t>(limits.webProcessMegabytes, 64, 1U << 20U);
  webkit_memory_pressure_settings_set_memory_limit(memory.get(), static_cast<guint>(megabytes));
  webkit_memory_pressure_settings_set_kill_threshold(memory.get(), 1.0);
  webkit_memory_pressure_settings_set_strict_threshold(memory.get(), 0.5);
  webkit_memory_pressure_settings_set_conservative_threshold(memory.get(), 0.33);
  webkit_memory_pressure_settings_set_poll_interval(memory.get(), 2);
  auto context = GPtr<WebKitWebContext>::adopt(WEBKIT_WEB_CONTEXT(
      g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings", memory.get(), nullptr)));
  webkit_web_context_set_cache_model(context.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  webkit_web_context_set_spell_checking_enabled(context.get(), FALSE);
  return context;
}

}  // namespace

WebEngine::WebEngine(WebModuleServices services)
    : services_{std::move(services)},
      context_{makeContext(services_.limits)},
      session_{GPtr<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral())},
      cookies_{session(), services_.cookies} {
  refuseDownloads(session_.get(), connections_);
}

GPtr<WebKitSettings> WebEngine::makeSettings() const {
  return GPtr<WebKitSettings>::adopt(webkit_settings_new_with_settings(
      "allow-modal-dialogs", FALSE,                      //
      "default-charset", "UTF-8",                        //
      "enable-back-forward-navigation-gestures", FALSE,  //
      "enable-fullscreen", FALSE,                        //
      "enable-media-stream", FALSE,                      //
      "enable-page-cache", FALSE,                        //
      "enable-webrtc", FALSE,                            //
      "javascript-can-access-clipboard", FALSE,          //
      "javascript-can-open-windows-automatically", FALSE, nullptr));
}

std::string WebEngine::userAgent() const {
  const auto settings = makeSettings();
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
