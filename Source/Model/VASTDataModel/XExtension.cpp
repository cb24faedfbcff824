#include "Model/VASTDataModel/XExtension.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XExtension::setExtensionAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XExtension setExtensionAttributes:]"};
  type = attributes["type"];
}

}  // namespace tavo
