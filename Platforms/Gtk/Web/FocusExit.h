#pragma once

#include <webkit/webkit.h>

namespace tavo::gtk {

// Lets the keyboard out of a page. When the Tab key has come by the last thing in a page, the
// engine takes the focus from the page and gives it to nobody, or to a helper widget of its own out
// of which no key leads. So the helper takes none, and after each Tab the page is asked whether it
// still has the focus; where it has not, the next widget gets it. F6, and Tab with Control, leave
// at once, whatever a page makes of its keys. Main thread only.
class FocusExit {
 public:
  explicit FocusExit(WebKitWebView* page);
  ~FocusExit();
  FocusExit(const FocusExit&) = delete;
  FocusExit& operator=(const FocusExit&) = delete;

 private:
  static gboolean onPressed(GtkEventControllerKey*, guint key, guint code, GdkModifierType state,
                            FocusExit* self);
  static void onReleased(GtkEventControllerKey*, guint key, guint code, GdkModifierType state,
                         FocusExit* self);
  static void onAnswer(GObject* page, GAsyncResult* result, gpointer direction);

  WebKitWebView* page_;
  GtkEventController* keys_;
  bool pressed_ = false;  // Tab, here and not where the focus came from
};

}  // namespace tavo::gtk
