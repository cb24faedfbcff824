#include "Model/VASTDataModel/LinearAds/XLinear.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XLinear::setLinearAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XLinear setLinearAttributes:]"};
  skipOffset = attributes["skipOffset"];
}

}  // namespace tavo
