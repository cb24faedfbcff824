#include <tavo/Runtime.h>
#include <tavo/gtk/AdWindow.h>

#include "Gtk/Services/GtkApplication.h"
#include "Runtime/MainThread.h"
#include "Scene/Window.h"

namespace tavo::gtk {

std::shared_ptr<ViewController> rootViewControllerOf(Gtk::Window& window) {
  requireMainThread("rootViewControllerOf");
  auto* application =
      dynamic_cast<GtkApplication*>(Runtime::current().platform().application.get());
  if (application == nullptr) return nullptr;
  return application->sceneOf(window)->window()->rootViewController();
}

Gtk::Window* windowOf(ViewController& controller) {
  auto* application =
      dynamic_cast<GtkApplication*>(Runtime::current().platform().application.get());
  const Window* const window = controller.view()->window();
  return application == nullptr || window == nullptr ? nullptr
                                                     : application->nativeWindowOf(*window);
}

}  // namespace tavo::gtk
