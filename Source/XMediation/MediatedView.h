#pragma once

#include <tavo/View.h>

#include "AdController/AdGenerator/AdViewIdentity.h"

namespace tavo {

// What mediation needs of the view whose slot it fills.
class MediatedView : public virtual AdViewIdentity {
 public:
  // The slot is handed to the mediated network.
  virtual void setIsMediationAdServed(bool served) = 0;
};

}  // namespace tavo
