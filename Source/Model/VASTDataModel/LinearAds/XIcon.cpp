#include "Model/VASTDataModel/LinearAds/XIcon.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XIcon::setIconAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XIcon setIconAttributes:]"};
  program = attributes["program"];
  width = attributes["width"];
  height = attributes["height"];
  xPosition = attributes["xPosition"];
  yPosition = attributes["yPosition"];
  duration = attributes["duration"];
  offset = attributes["offset"];
  apiFramework = attributes["apiFramework"];
}

}  // namespace tavo
