#pragma once

#include "Services/Log.h"

namespace tavo::gtk {

// Writes through GLib's log in the domain "CorvaneTAVOSDK", at its levels: on the standard error
// output one line a message, unless the host has installed a log writer of its own. Of the levels
// debug and info nothing is seen there unless G_MESSAGES_DEBUG names the domain.
// Line ends inside a message become blanks, so that text out of an ad cannot pose as a line of the
// host's.
class GtkLog : public Log {
 public:
  void write(LogLevel level, std::string_view message) override;
};

}  // namespace tavo::gtk
