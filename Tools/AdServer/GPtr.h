#pragma once

#include <gio/gio.h>

#include <memory>

namespace tavo::adserver {

// How each kind of GLib object is let go. An object that is not listed is a GObject.
struct GRelease {
  void operator()(char* text) const { g_free(text); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(GUri* uri) const { g_uri_unref(uri); }
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }

  // A source is also taken out of its context: whoever drops it wants no further call.
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }

  template <typename Object>
  void operator()(Object* object) const {
    g_object_unref(object);
  }
};

// Owns one reference to a GLib object, or one g_malloc'ed text.
template <typename Object>
using GPtr = std::unique_ptr<Object, GRelease>;

// A further reference to an object that somebody else owns.
template <typename Object>
[[nodiscard]] GPtr<Object> share(Object* object) {
  return GPtr<Object>{static_cast<Object*>(g_object_ref(object))};
}

}  // namespace tavo::adserver
