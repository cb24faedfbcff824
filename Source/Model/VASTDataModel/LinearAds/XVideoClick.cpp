#include "Model/VASTDataModel/LinearAds/XVideoClick.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XVideoClick::setVideoClickAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XVideoClick setVideoClickAttributes:]"};
  clickThroughIdentifier = attributes["id"];
}

}  // namespace tavo
