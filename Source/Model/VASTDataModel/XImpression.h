#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// One place to tell when the ad has been shown.
struct XImpression {
  OptionalText identifier;  // attribute "id"
  OptionalText url;         // text of the element

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setImpressionAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
