#include "Gtk/Services/GtkLog.h"

#include <glib.h>

#include <algorithm>
#include <string>

#include "Values/Text.h"

namespace tavo::gtk {

void GtkLog::write(std::string_view message) {
  std::string line = validUtf8(trimmed(message));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return g_ascii_iscntrl(c) != FALSE; }, ' ');
  g_log("CorvaneTAVOSDK", G_LOG_LEVEL_MESSAGE, "%s", line.c_str());
}

}  // namespace tavo::gtk
