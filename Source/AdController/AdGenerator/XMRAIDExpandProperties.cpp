#include "AdController/AdGenerator/XMRAIDExpandProperties.h"

#include "ErrorHandler/OperationLog.h"
#include "Utilities/NumberText.h"

namespace tavo {

XMRAIDExpandProperties::XMRAIDExpandProperties(const Size& size)
    : width{truncated(size.width)}, height{truncated(size.height)} {
  const OperationLog log{"-[XMRAIDExpandProperties initWithSize:]"};
}

XMRAIDExpandProperties XMRAIDExpandProperties::propertiesFromArgs(const MraidParameters& args) {
  const OperationLog log{"+[XMRAIDExpandProperties propertiesFromArgs:]"};
  XMRAIDExpandProperties properties;
  properties.width = leadingInteger(valueOf(args, "width"));
  properties.height = leadingInteger(valueOf(args, "height"));
  properties.useCustomClose = valueOf(args, "useCustomClose") == "true";
  return properties;
}

std::string XMRAIDExpandProperties::description() const {
  const OperationLog log{"-[XMRAIDExpandProperties description]"};
  std::string text = "{width:" + std::to_string(width);
  text += ",height:" + std::to_string(height);
  text.append(",useCustomClose:").append(trueOrFalse(useCustomClose)).append("}");
  return text;
}

}  // namespace tavo
