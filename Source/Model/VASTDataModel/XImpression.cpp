#include "Model/VASTDataModel/XImpression.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XImpression::setImpressionAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XImpression setImpressionAttributes:]"};
  identifier = attributes["id"];
}

}  // namespace tavo
