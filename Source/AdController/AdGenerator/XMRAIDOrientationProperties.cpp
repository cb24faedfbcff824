#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"

#include "ErrorHandler/OperationLog.h"

namespace tavo {

namespace {

ForceOrientation forceOrientationNamed(std::string_view name) {
  if (name == "portrait") return ForceOrientation::portrait;
  if (name == "landscape") return ForceOrientation::landscape;
  return ForceOrientation::none;
}

}  // namespace

XMRAIDOrientationProperties XMRAIDOrientationProperties::propertiesFromArgs(
    const MraidParameters& args) {
  const OperationLog log{"+[XMRAIDOrientationProperties propertiesFromArgs:]"};
  XMRAIDOrientationProperties properties;
  properties.allowOrientationChange = valueOf(args, "allowOrientationChange") != "false";
  properties.forceOrientation = forceOrientationNamed(valueOf(args, "forceOrientation"));
  return properties;
}

std::string XMRAIDOrientationProperties::description() const {
  const OperationLog log{"-[XMRAIDOrientationProperties description]"};
  std::string text = "{allowOrientationChange:";
  text.append(trueOrFalse(allowOrientationChange));
  text.append(",forceOrientation:'").append(nameOf(forceOrientation)).append("'}");
  return text;
}

}  // namespace tavo
