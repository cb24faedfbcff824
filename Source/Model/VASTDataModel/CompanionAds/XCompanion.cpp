#include "Model/VASTDataModel/CompanionAds/XCompanion.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XCompanion::setCompanionAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XCompanion setCompanionAttributes:]"};
  identifier = attributes["id"];
  width = attributes["width"];
  height = attributes["height"];
  assetWidth = attributes["assetWidth"];
  assetHeight = attributes["assetHeight"];
  expandedHeight = attributes["expandedHeight"];
  expandedWidth = attributes["expandedWidth"];
  apiFramework = attributes["apiFramework"];
  adSlotID = attributes["adSlotID"];
}

}  // namespace tavo
