#include "AdController/AdGenerator/XMRAIDResizeProperties.h"

#include <algorithm>
#include <array>

#include "ErrorHandler/OperationLog.h"
#include "Utilities/NumberText.h"

namespace tavo {

namespace {

// In the order of the enumeration's values.
constexpr std::array<std::string_view, 7> closePositionNames{
    "top-left",    "top-center",    "top-right",   "center",
    "bottom-left", "bottom-center", "bottom-right"};

CustomClosePosition closePositionNamed(std::string_view name) {
  const auto found = std::find(closePositionNames.begin(), closePositionNames.end(), name);
  if (found == closePositionNames.end()) return CustomClosePosition::topRight;
  return static_cast<CustomClosePosition>(found - closePositionNames.begin());
}

}  // namespace

std::string_view nameOf(CustomClosePosition position) {
  const auto value = static_cast<std::size_t>(position);
  return value < closePositionNames.size() ? closePositionNames.at(value) : "(null)";
}

XMRAIDResizeProperties XMRAIDResizeProperties::propertiesFromArgs(const MraidParameters& args) {
  const OperationLog log{"+[XMRAIDResizeProperties propertiesFromArgs:]"};
  XMRAIDResizeProperties properties;
  properties.width = leadingInteger(valueOf(args, "width"));
  properties.height = leadingInteger(valueOf(args, "height"));
  properties.customClosePosition = closePositionNamed(valueOf(args, "customClosePosition"));
  properties.offsetX = leadingInteger(valueOf(args, "offsetX"));
  properties.offsetY = leadingInteger(valueOf(args, "offsetY"));
  properties.allowOffscreen = valueOf(args, "allowOffscreen") == "true";
  return properties;
}

std::string XMRAIDResizeProperties::description() const {
  const OperationLog log{"-[XMRAIDResizeProperties description]"};
  std::string text = "{width:" + std::to_string(width);
  text += ",height:" + std::to_string(height);
  text.append(",customClosePosition:'").append(nameOf(customClosePosition)).append("'");
  text += ",offsetX:" + std::to_string(offsetX);
  text += ",offsetY:" + std::to_string(offsetY);
  text.append(",allowOffscreen:").append(trueOrFalse(allowOffscreen)).append("}");
  return text;
}

}  // namespace tavo
