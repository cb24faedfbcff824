#include "Gtk/Services/ReadyTimeSource.h"

namespace tavo::gtk {

GSource* newReadyTimeSource() {
  static GSourceFuncs functions{nullptr,
                                nullptr,
                                [](GSource*, GSourceFunc callback, gpointer data) { return callback(data); },
                                nullptr,
                                nullptr,
                                nullptr};
  return g_source_new(&functions, sizeof(GSource));
}

}  // namespace tavo::gtk
