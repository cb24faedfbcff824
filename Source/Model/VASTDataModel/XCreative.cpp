#include "Model/VASTDataModel/XCreative.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XCreative::setCreativeAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XCreative setCreativeAttributes:]"};
  identifier = attributes["id"];
  sequence = attributes["sequence"];
  adIdentifier = attributes["adIdentifier"];
  apiFramework = attributes["apiFramework"];
}

}  // namespace tavo
