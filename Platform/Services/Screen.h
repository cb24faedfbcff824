#pragma once

#include <optional>

#include <tavo/Geometry.h>

namespace tavo {

// The surface that full-screen content covers. On a desktop that is the host's window: an ad never
// reaches beyond it. Main thread only.
class Screen {
 public:
  virtual ~Screen() = default;

  // Always in the natural (portrait) orientation: the width is the shorter side. Points.
  [[nodiscard]] virtual Rect bounds() const = 0;

  // Pixels per point; none where the platform does not tell.
  [[nodiscard]] virtual std::optional<double> scale() const = 0;
};

}  // namespace tavo
