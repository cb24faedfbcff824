#pragma once

#include <memory>
#include <utility>

#include "Services/Application.h"
#include "Services/Screen.h"

namespace tavo::gtk {

// What full-screen content may cover: the key window of the host, or the part of it that a
// presented controller of one orientation has. Before there is one, the first monitor. Main thread
// only.
class GtkScreen : public Screen {
 public:
  explicit GtkScreen(std::shared_ptr<Application> application)
      : application_{std::move(application)} {}

  [[nodiscard]] Rect bounds() const override;
  [[nodiscard]] std::optional<double> scale() const override;

 private:
  std::shared_ptr<Application> application_;
};

}  // namespace tavo::gtk
