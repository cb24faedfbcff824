#pragma once

#include <webkit/webkit.h>

#include <functional>

#include "Gtk/SignalConnections.h"

namespace tavo::gtk {

// What a page that a person asked for may ask of that person: to read a message, to say yes or no,
// and to see another page in a window of its own, which takes this one's place. Main thread only.
class VisitedPage {
 public:
  // Connected before the refusals, which answer whatever is left. `waits` hears when the page
  // begins to wait for the person, who may take any time, and when that is over.
  VisitedPage(WebKitWebView* view, SignalConnections& connections,
              std::function<void(bool isWaiting)> waits);
  // A question that is open is answered with no.
  ~VisitedPage();
  VisitedPage(const VisitedPage&) = delete;
  VisitedPage& operator=(const VisitedPage&) = delete;

 private:
  static GtkWidget* onCreate(WebKitWebView* view, WebKitNavigationAction* action, gpointer self);
  static gboolean onQuestion(WebKitWebView* view, WebKitScriptDialog* question, VisitedPage* self);
  static void onLoad(WebKitWebView* view, WebKitLoadEvent event, VisitedPage* self);
  static void onAnswer(GtkDialog* dialog, int response, VisitedPage* self);

  void show(WebKitWebView* view, GtkWindow* parent);
  void answer(bool yes);

  std::function<void(bool)> waits_;
  WebKitScriptDialog* question_ = nullptr;
  GtkWindow* dialog_ = nullptr;
  int asked_ = 0;  // by the page in front
};

}  // namespace tavo::gtk
