#include "Model/VASTDataModel/XPricing.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XPricing::setPricingAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XPricing setPricingAttributes:]"};
  model = attributes["model"];
  currency = attributes["currency"];
}

}  // namespace tavo
