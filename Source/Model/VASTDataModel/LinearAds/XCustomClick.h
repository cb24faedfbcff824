#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// A click that the publisher defines.
struct XCustomClick {
  OptionalText identifier;  // attribute "id"
  OptionalText url;         // text of the element

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setCustomClickAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
