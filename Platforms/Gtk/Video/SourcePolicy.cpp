#include "Gtk/Video/SourcePolicy.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "Gtk/Guarded.h"

namespace tavo::gtk {

namespace {

// The names under which a source reads over HTTP; the last two are HTTP radio.
constexpr std::string_view httpProtocols[] = {"http", "https", "icy", "icyx"};

bool readsHttpOnly(GstElement* source) {
  const gchar* const* protocols = gst_uri_handler_get_protocols(GST_URI_HANDLER(source));
  if (protocols == nullptr) return false;
  for (; *protocols != nullptr; ++protocols) {
    const auto* const known =
        std::find(std::begin(httpProtocols), std::end(httpProtocols), std::string_view{*protocols});
    if (known == std::end(httpProtocols)) return false;
  }
  return true;
}

void setIfThere(GstElement* source, const char* property, int value) {
  GObjectClass* type = G_OBJECT_GET_CLASS(source);
  if (g_object_class_find_property(type, property) == nullptr) return;
  GValue number = G_VALUE_INIT;
  g_value_init(&number, G_TYPE_INT);
  g_value_set_int(&number, value);
  g_object_set_property(G_OBJECT(source), property, &number);  // converts to the property's type
  g_value_unset(&number);
}

// Runs on a thread of the pipeline.
void elementAdded(GstBin* /*pipeline*/, GstBin* /*bin*/, GstElement* element, gpointer timeout) {
  if (!isSource(element)) return;
  if (readsHttpOnly(element)) {
    setIfThere(element, "timeout", GPOINTER_TO_INT(timeout));
    setIfThere(element, "retries", 0);
    return;
  }
  gst_element_set_locked_state(element, TRUE);
  GError* error = g_error_new_literal(GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_AUTHORIZED,
                                      "Only http and https are played.");
  gst_element_post_message(element, gst_message_new_error(GST_OBJECT(element), error, nullptr));
  g_error_free(error);
}

}  // namespace

bool isSource(GstElement* element) {
  return GST_IS_URI_HANDLER(element) &&
         gst_uri_handler_get_uri_type(GST_URI_HANDLER(element)) == GST_URI_SRC;
}

void allowHttpOnly(GstElement* pipeline, Seconds timeout) {
  const int seconds = std::max(1, static_cast<int>(timeout.count()));
  g_signal_connect(pipeline, "deep-element-added", G_CALLBACK(fenced<&elementAdded>),
                   GINT_TO_POINTER(seconds));
}

}  // namespace tavo::gtk
