#pragma once

#include "Services/Screen.h"

namespace tavo::gtk {

// What full-screen content may cover: the key window of the host. Before there is one, the first
// monitor. Main thread only.
class GtkScreen : public Screen {
 public:
  [[nodiscard]] Rect bounds() const override;
  [[nodiscard]] std::optional<double> scale() const override;
};

}  // namespace tavo::gtk
