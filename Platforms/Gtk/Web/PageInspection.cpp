#include "Gtk/Web/PageInspection.h"

#include <array>
#include <cstdio>
#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

constexpr const char* inspectionChannel = "tavoInspection";

// Wraps the console and listens for what no script catches. It holds what it needs before the page
// can change it, and stops after a thousand messages: a page that logs in a loop must not flood
// whoever looks.
constexpr std::string_view watchBegin = R"js((() => {
  const channel = window.webkit && window.webkit.messageHandlers.tavoInspection;
  if (!channel) return;
  const post = channel.postMessage.bind(channel);
  const longest = 10000;
  let left = 1000;
  const textOf = value => {
    try {
      if (typeof value === 'string') return value;
      if (value instanceof Error || typeof value !== 'object') return String(value);
      const json = JSON.stringify(value);
      return json === undefined ? String(value) : json;
    } catch (error) {
      return Object.prototype.toString.call(value);
    }
  };
  const send = (kind, text, fields) => {
    if (left <= 0) return;
    if (--left === 0) text = 'This page tells too much: nothing more of it is shown.';
    post({kind, text: textOf(text).slice(0, longest), fields: fields || {}});
  };
  const placeOf = (error, depth) => {
    const lines = String(error && error.stack || '').split('\n');
    const match = /^(?:.*@)?(.*?):(\d+):(\d+)$/.exec(lines[depth] || '');
    return match ? {url: match[1], line: match[2], column: match[3]} : {};
  };
  for (const level of ['log', 'info', 'warn', 'error', 'debug']) {
    const original = console[level];
    console[level] = function (...parts) {
      send('console', parts.map(textOf).join(' '), {level, ...placeOf(new Error(), 1)});
      return original.apply(this, parts);
    };
  }
  addEventListener('error', event => {
    const target = event.target;
    if (target && target !== window && target.tagName) {
      const url = textOf(target.currentSrc || target.src || target.href || '');
      // The bridge comes another way; the tags that ask for it always fail.
      if (target.tagName === 'SCRIPT' && /mraid\.js$/i.test(url)) return;
      send('scriptError', target.tagName.toLowerCase() + ' did not load: ' + url,
           {what: 'resource', url});
      return;
    }
    send('scriptError', event.message,
         {what: 'script', url: textOf(event.filename), line: textOf(event.lineno),
          column: textOf(event.colno), stack: textOf(event.error && event.error.stack || '')});
  }, true);
  addEventListener('unhandledrejection', event => {
    send('scriptError', 'Unhandled rejection: ' + textOf(event.reason),
         {what: 'script', ...placeOf(event.reason, 0)});
  });
  addEventListener('securitypolicyviolation', event => {
    send('scriptError', 'Content policy forbids ' + event.violatedDirective + ': ' +
         event.blockedURI, {what: 'policy', url: event.blockedURI, line: textOf(event.lineNumber)});
  });
)js";

constexpr std::string_view probeBegin = "  (tell => {\n";
constexpr std::string_view probeEnd = "\n  })((text, fields) => send('probe', text, fields));\n";
constexpr std::string_view watchEnd = "})();";

std::string scriptFor(const std::string& probe) {
  std::string script{watchBegin};
  if (!probe.empty()) script.append(probeBegin).append(validUtf8(probe)).append(probeEnd);
  return script.append(watchEnd);
}

GPtr<JSCValue> property(JSCValue* object, const char* name) {
  return GPtr<JSCValue>::adopt(jsc_value_object_get_property(object, name));
}

std::string spoken(JSCValue* value) {
  if (value == nullptr || jsc_value_is_string(value) == FALSE) return {};
  const GText text{jsc_value_to_string(value)};
  return text ? validUtf8(text.get()) : std::string{};
}

InspectionKind kindOf(std::string_view name) {
  if (name == "scriptError") return InspectionKind::scriptError;
  return name == "probe" ? InspectionKind::probe : InspectionKind::console;
}

std::vector<InspectionField> fieldsOf(JSCValue* object) {
  std::vector<InspectionField> fields;
  if (object == nullptr || jsc_value_is_object(object) == FALSE) return fields;
  const GOwned<char*, &g_strfreev> names{jsc_value_object_enumerate_properties(object)};
  for (char** name = names.get(); name != nullptr && *name != nullptr; ++name) {
    fields.push_back({validUtf8(*name), spoken(property(object, *name).get())});
  }
  return fields;
}

// One thing that the page fetches; it may end after the page's owner is gone.
struct Fetch {
  SlotInspection inspection;
  std::shared_ptr<RunLoop> runLoop;
  std::string method;
  Seconds start{};
  std::string failure{};
};

std::string milliseconds(Seconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", time.count());
  return text;
}

void tellFetch(WebKitWebResource* resource, const Fetch& fetch, gsize bytes) {
  if (!fetch.inspection.isOn()) return;
  auto* const response = webkit_web_resource_get_response(resource);
  const std::string url = validUtf8(textOf(webkit_web_resource_get_uri(resource)));
  std::string status;
  std::string type;
  if (response != nullptr) {
    status = std::to_string(webkit_uri_response_get_status_code(response));
    type = validUtf8(textOf(webkit_uri_response_get_mime_type(response)));
  }
  std::vector<InspectionField> fields{
      {"url", url},
      {"method", fetch.method},
      {"status", status},
      {"type", type},
      {"bytes", std::to_string(bytes)},
      {"seconds", milliseconds(fetch.runLoop->now() - fetch.start)}};
  if (!fetch.failure.empty()) fields.push_back({"error", fetch.failure});
  const std::string end = fetch.failure.empty() ? status : fetch.failure;
  fetch.inspection.tell(InspectionKind::resource, fetch.method + " " + url + " -> " + end,
                        std::move(fields));
}

void onFetchFailed(WebKitWebResource* /*resource*/, GError* error, gpointer data) {
  static_cast<Fetch*>(data)->failure =
      error == nullptr ? "failed" : validUtf8(textOf(error->message));
}

void onFetchData(GObject* resource, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Fetch> fetch{static_cast<Fetch*>(data)};
  gsize length = 0;
  g_free(
      webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(resource), result, &length, nullptr));
  tellFetch(WEBKIT_WEB_RESOURCE(resource), *fetch, length);
}

void onFetchFinished(WebKitWebResource* resource, gpointer data) {
  const auto& fetch = *static_cast<Fetch*>(data);
  auto* const response = webkit_web_resource_get_response(resource);
  const gsize declared = response == nullptr ? 0 : webkit_uri_response_get_content_length(response);
  if (declared > 0 || !fetch.failure.empty()) return tellFetch(resource, fetch, declared);
  webkit_web_resource_get_data(resource, nullptr, fenced<&onFetchData>,
                               std::make_unique<Fetch>(fetch).release());
}

void dropFetch(gpointer data, GClosure* /*closure*/) { delete static_cast<Fetch*>(data); }

}  // namespace

PageInspection::PageInspection(WebKitWebView* view, WebKitUserContentManager* content,
                               const void* slot, const WebModuleServices& services)
    : view_{view},
      content_{content},
      inspection_{services.inspection, slot},
      runLoop_{services.runLoop} {
  const auto& inspection = *services.inspection;
  webkit_settings_set_enable_developer_extras(webkit_web_view_get_settings(view_),
                                              inspection.allowsPageTools ? TRUE : FALSE);
  connections_.connect(content_, "script-message-received::tavoInspection",
                       fenced<&PageInspection::onMessage>, this);
  connections_.connect(view_, "resource-load-started", fenced<&PageInspection::onResource>, this);
  webkit_user_content_manager_register_script_message_handler(content_, inspectionChannel, nullptr);
  addScript(scriptFor(inspection.pageProbe));
}

PageInspection::~PageInspection() {
  webkit_user_content_manager_unregister_script_message_handler(content_, inspectionChannel,
                                                                nullptr);
  auto* const settings = webkit_web_view_get_settings(view_);
  if (webkit_settings_get_enable_developer_extras(settings) == FALSE) return;
  webkit_web_inspector_close(webkit_web_view_get_inspector(view_));
  webkit_settings_set_enable_developer_extras(settings, FALSE);
}

void PageInspection::addScript(const std::string& script) {
  auto* added =
      webkit_user_script_new(script.c_str(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                             WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
  webkit_user_content_manager_add_script(content_, added);
  webkit_user_script_unref(added);
}

void PageInspection::openTools() {
  webkit_web_inspector_show(webkit_web_view_get_inspector(view_));
}

void PageInspection::onMessage(WebKitUserContentManager* /*manager*/, JSCValue* message,
                               PageInspection* self) {
  self->heard(message);
}

void PageInspection::heard(JSCValue* message) {
  if (!inspection_.isOn() || jsc_value_is_object(message) == FALSE) return;
  const auto kind = kindOf(spoken(property(message, "kind").get()));
  inspection_.tell(kind, spoken(property(message, "text").get()),
                   fieldsOf(property(message, "fields").get()));
}

void PageInspection::onResource(WebKitWebView* /*view*/, WebKitWebResource* resource,
                                WebKitURIRequest* request, PageInspection* self) {
  auto* const fetch =
      std::make_unique<Fetch>(Fetch{self->inspection_, self->runLoop_,
                                    textOf(webkit_uri_request_get_http_method(request)),
                                    self->runLoop_->now()})
          .release();
  if (fetch->method.empty()) fetch->method = "GET";
  g_signal_connect(resource, "failed", G_CALLBACK(fenced<&onFetchFailed>), fetch);
  g_signal_connect_data(resource, "finished", G_CALLBACK(fenced<&onFetchFinished>), fetch,
                        &dropFetch, GConnectFlags{});
}

}  // namespace tavo::gtk
