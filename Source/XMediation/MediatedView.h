#pragma once

#include <tavo/View.h>

namespace tavo {

// What mediation needs of the view whose slot it fills.
class MediatedView {
 public:
  virtual ~MediatedView() = default;

  // The view itself: a mediated banner becomes its subview.
  [[nodiscard]] virtual View& sceneView() = 0;
  // The slot is handed to the mediated network.
  virtual void setIsMediationAdServed(bool served) = 0;
};

}  // namespace tavo
