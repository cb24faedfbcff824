#include "Model/VASTDataModel/NonLinearAds/XNonLinear.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XNonLinear::setNonLinearAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XNonLinear setNonLinearAttributes:]"};
  identifier = attributes["id"];
  width = attributes["width"];
  height = attributes["height"];
  expandedWidth = attributes["expandedWidth"];
  expandedHeight = attributes["expandedHeight"];
  scalable = attributes["scalable"];
  maintainAspectRatio = attributes["maintainAspectRatio"];
  minSuggestedDuration = attributes["minSuggestedDuration"];
  apiFramework = attributes["apiFramework"];
}

}  // namespace tavo
