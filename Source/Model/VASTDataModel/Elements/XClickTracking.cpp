#include "Model/VASTDataModel/Elements/XClickTracking.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XClickTracking::setClickTrackingAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XClickTracking setClickTrackingAttributes:]"};
  identifier = attributes["id"];
}

}  // namespace tavo
