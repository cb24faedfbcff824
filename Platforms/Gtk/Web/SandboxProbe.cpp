#include "Gtk/Web/SandboxProbe.h"

#include "Gtk/Services/HelperProgram.h"

namespace tavo::gtk {

bool sandboxIsAvailable() {
  constexpr Seconds deadline{5};
  return runHelperProgram({TAVO_BWRAP, "--die-with-parent", "--unshare-pid", "--unshare-uts",
                           "--unshare-ipc", "--unshare-net", "--ro-bind", "/", "/", "--proc",
                           "/proc", "--dev", "/dev", "--", "/bin/true"},
                          deadline)
      .has_value();
}

}  // namespace tavo::gtk
