#pragma once

#include <webkit/webkit.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "Gtk/SignalConnections.h"
#include "Gtk/Web/NetworkMeter.h"

namespace tavo::gtk {

// Counts what a page fetches: by the lengths that servers declare, and by what arrives where they
// declare none. Main thread only.
class FetchedBytes {
 public:
  // `exceeded` is called once between two times of starting anew. The meter must outlive this.
  FetchedBytes(WebKitWebView* view, SignalConnections& connections, NetworkMeter& meter,
               std::uint64_t limit, std::function<void()> exceeded);

  // Another page: what the one before still had open is over.
  void beginPage();
  void startAnew();

 private:
  struct Count;
  struct Answer;
  static void onResource(WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*,
                         FetchedBytes* self);
  static void onResponse(WebKitWebResource* resource, GParamSpec*, gpointer answer);
  static void onFinished(WebKitWebResource* resource, gpointer answer);
  static void onData(GObject* resource, GAsyncResult* result, gpointer answer);

  std::shared_ptr<Count> count_;
};

}  // namespace tavo::gtk
