#pragma once

#include <webkit/webkit.h>

#include "Gtk/SignalConnections.h"

namespace tavo::gtk {

// Answers for a page everything that a browser would ask its user: dialogs, permissions,
// files, printing, the context menu, the page's own full screen. Alerts close, questions
// are answered with no, everything else is refused, and nobody has to be there.
void refuseQuestionsOfPage(WebKitWebView* view, SignalConnections& connections);

// Cancels every download of the pages of `session`, also those that a script starts.
void refuseDownloads(WebKitNetworkSession* session, SignalConnections& connections);

}  // namespace tavo::gtk
