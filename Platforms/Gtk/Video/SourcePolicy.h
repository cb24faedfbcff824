#pragma once

#include <gst/gst.h>

#include <tavo/Date.h>

namespace tavo::gtk {

// Keeps a pipeline to the web: whatever reads from an address must be the HTTP source, also when a
// file names further addresses, and gives up in time. Any other source fails and is never started.
// `timeout`: how long the server may be silent.
void allowHttpOnly(GstElement* pipeline, Seconds timeout);

// Whether an element reads from an address.
[[nodiscard]] bool isSource(GstElement* element);

}  // namespace tavo::gtk
