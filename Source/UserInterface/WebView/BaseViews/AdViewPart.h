#pragma once

#include <tavo/XAdView.h>

#include "AdController/AdGenerator/AdViewIdentity.h"

namespace tavo {

// What each part of an ad view knows: the view, which owns the part and outlives it.
class AdViewPart : public virtual AdViewIdentity {
 public:
  [[nodiscard]] std::shared_ptr<void> hold() override { return view_.weak_from_this().lock(); }
  [[nodiscard]] View& sceneView() override { return view_; }
  [[nodiscard]] PlacementType placementType() const override { return view_.placementType(); }

 protected:
  using Told = XAdViewDelegate;

  explicit AdViewPart(XAdView& view) : view_{view} {}

  [[nodiscard]] XAdView& view() const { return view_; }
  // Tells the host, which may drop the view in return.
  template <typename Operation, typename... Arguments>
  void tell(Operation operation, Arguments&&... arguments) const {
    view_.delegate.tell(operation, view_, std::forward<Arguments>(arguments)...);
  }

 private:
  XAdView& view_;
};

}  // namespace tavo
