#pragma once

#include "Model/VASTDataModel/CompanionAds/XCompanion.h"
#include "Model/VASTDataModel/Elements/AttributeMap.h"
#include "Model/VASTDataModel/LinearAds/XLinear.h"
#include "Model/VASTDataModel/NonLinearAds/XNonLinearAds.h"
#include "Model/VASTDataModel/XCreativeExtension.h"

namespace tavo {

// One creative of an ad.
struct XCreative {
  OptionalText identifier;  // attribute "id"
  OptionalText sequence;
  OptionalText adIdentifier;
  OptionalText apiFramework;
  OptionalList<XCreativeExtension> creativeExtensionsArray;  // always none
  XLinear linearAds;  // empty when the creative has no Linear
  OptionalList<XCompanion> companionads;
  OptionalList<XNonLinearAds> nonLinearAdsArray;

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setCreativeAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
