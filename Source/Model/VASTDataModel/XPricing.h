#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// The price of an ad.
struct XPricing {
  OptionalText url;       // text of Pricing
  OptionalText model;     // attribute "model", which the parser does not read
  OptionalText currency;  // attribute "currency", which the parser does not read

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setPricingAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
