#pragma once

#include <glib.h>

namespace tavo::gtk {

// A source of GLib's loop that calls its callback once its ready time has come. The caller owns it.
[[nodiscard]] GSource* newReadyTimeSource();

}  // namespace tavo::gtk
