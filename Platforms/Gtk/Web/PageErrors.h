#pragma once

#include <glib.h>

#include <string>

#include <tavo/Error.h>

namespace tavo::gtk {

// The error that a web view's client hears for one of the engine's: transport failures in the
// transport's domain, the engine's own under its codes.
[[nodiscard]] Error pageError(const GError& error);

// A load that the policy stopped: whoever refused it knows.
[[nodiscard]] bool isInterruption(const GError& error);

[[nodiscard]] Error cannotShowError(const std::string& what);

}  // namespace tavo::gtk
