#pragma once

#include <memory>

#include <tavo/PlacementType.h>

namespace tavo {

class View;

// The ad view, as everybody knows it who works for it. Main thread only.
class AdViewIdentity {
 public:
  virtual ~AdViewIdentity() = default;

  // Keeps the view alive for the length of a turn; null once it is going.
  [[nodiscard]] virtual std::shared_ptr<void> hold() = 0;
  // The view itself: pages, pictures and mediated banners become its subviews.
  [[nodiscard]] virtual View& sceneView() = 0;
  [[nodiscard]] virtual PlacementType placementType() const = 0;
};

// A part of something that `owner` holds, as a pointer that shares it: who holds the part holds the
// whole. Null without an owner.
template <typename Part>
[[nodiscard]] std::shared_ptr<Part> sharedPart(const std::shared_ptr<void>& owner, Part& part) {
  return owner ? std::shared_ptr<Part>{owner, &part} : nullptr;
}

}  // namespace tavo
