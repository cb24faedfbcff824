#include "Gtk/Services/GtkLog.h"

#include <glib.h>

#include <algorithm>
#include <string>

#include "Values/Text.h"

namespace tavo::gtk {

namespace {

// An error is critical to GLib: its own "error" ends the process.
GLogLevelFlags flagOf(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return G_LOG_LEVEL_DEBUG;
    case LogLevel::info:
      return G_LOG_LEVEL_INFO;
    case LogLevel::shown:
      return G_LOG_LEVEL_MESSAGE;
    case LogLevel::warning:
      return G_LOG_LEVEL_WARNING;
    case LogLevel::error:
      return G_LOG_LEVEL_CRITICAL;
  }
  return G_LOG_LEVEL_MESSAGE;
}

}  // namespace

void GtkLog::write(LogLevel level, std::string_view message) {
  std::string line = validUtf8(trimmed(message));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return g_ascii_iscntrl(c) != FALSE; }, ' ');
  g_log("CorvaneTAVOSDK", flagOf(level), "%s", line.c_str());
}

}  // namespace tavo::gtk
