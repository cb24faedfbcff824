#include "Gtk/Services/EnvironmentPath.h"

#include <cstdlib>

namespace tavo::gtk {

std::string pathOfEnvironment(const char* name) {
  const char* const chosen = secure_getenv(name);
  return chosen != nullptr && *chosen == '/' ? chosen : "";
}

}  // namespace tavo::gtk
