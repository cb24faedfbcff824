#include "Model/VASTDataModel/Elements/XResource.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XResource::setResourceAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XResource setResourceAttributes:]"};
  staticResourceCreativeType = attributes["creativeType"];
}

}  // namespace tavo
