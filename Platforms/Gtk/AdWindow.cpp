#include <tavo/Runtime.h>
#include <tavo/gtk/AdWindow.h>

#include "Gtk/Services/GtkApplication.h"

namespace tavo::gtk {

std::shared_ptr<ViewController> rootViewControllerOf(Gtk::Window& window) {
  auto* application =
      dynamic_cast<GtkApplication*>(Runtime::current().platform().application.get());
  if (application == nullptr) return nullptr;
  return application->sceneOf(window)->window()->rootViewController();
}

}  // namespace tavo::gtk
