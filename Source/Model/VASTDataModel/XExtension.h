#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// An extension of an ad. The parser makes none: extensions are not kept.
struct XExtension {
  OptionalText type;  // attribute "type"

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setExtensionAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
