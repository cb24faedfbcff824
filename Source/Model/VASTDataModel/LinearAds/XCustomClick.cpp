#include "Model/VASTDataModel/LinearAds/XCustomClick.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XCustomClick::setCustomClickAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XCustomClick setCustomClickAttributes:]"};
  identifier = attributes["id"];
}

}  // namespace tavo
