#pragma once

#include <glib.h>

#include <tavo/Error.h>

namespace tavo::gtk {

// The error that the rest of the library knows for one of GIO's or libsoup's.
[[nodiscard]] Error httpError(const GError& failure);

}  // namespace tavo::gtk
