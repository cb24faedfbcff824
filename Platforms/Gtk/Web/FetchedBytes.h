#pragma once

#include <webkit/webkit.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "Gtk/Web/SignalConnections.h"

namespace tavo::gtk {

// Counts what a page fetches: by the lengths that servers declare, and by what has arrived where
// they declare none. Main thread only.
class FetchedBytes {
 public:
  // `exceeded` is called once between two times of starting anew.
  FetchedBytes(WebKitWebView* view, SignalConnections& connections, std::uint64_t limit,
               std::function<void()> exceeded);

  void startAnew();

 private:
  struct Count;
  static void onResource(WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*,
                         FetchedBytes* self);
  static void onResponse(WebKitWebResource* resource, GParamSpec*, gpointer count);
  static void onFinished(WebKitWebResource* resource, gpointer count);
  static void onData(GObject* resource, GAsyncResult* result, gpointer count);

  std::shared_ptr<Count> count_;
};

}  // namespace tavo::gtk
