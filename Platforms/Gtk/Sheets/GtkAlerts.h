#pragma once

#include <functional>
#include <memory>

#include "Gtk/Services/GtkApplication.h"
#include "Services/Alerts.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// Alerts as dialogs of the toolkit, above the window that has the keyboard.
class GtkAlerts : public Alerts {
 public:
  GtkAlerts(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<GtkApplication> application);
  ~GtkAlerts() override;

  void show(const Alert& alert, std::function<void(std::size_t button)> answered) override;

 private:
  struct Shown;

  void answer(const std::shared_ptr<Shown>& shown, std::size_t button);

  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<GtkApplication> application_;
  std::vector<std::shared_ptr<Shown>> shown_;
};

}  // namespace tavo::gtk
