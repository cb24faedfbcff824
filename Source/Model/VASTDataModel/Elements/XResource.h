#pragma once

#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// What a companion, a non-linear ad or an icon shows. Where an element occurs again, the last one
// counts.
struct XResource {
  OptionalText staticResourceURL;           // text of StaticResource
  OptionalText staticResourceCreativeType;  // its attribute "creativeType", a MIME type
  OptionalText iFrameResourceURL;           // text of IFrameResource
  OptionalText HTMLResourceURL;             // text of HTMLResource: markup or a URL

  // Sets the fields that are filled from attributes; one whose attribute is absent becomes none.
  void setResourceAttributes(const AttributeMap& attributes);
};

}  // namespace tavo
