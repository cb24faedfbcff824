#include "UserInterface/WebView/BaseViews/RotationScript.h"

#include <array>

#include "Services/Device.h"
#include "Utilities/NumberText.h"

namespace tavo {

std::string rotationScript(InterfaceOrientation orientation, const std::string& contractVersion) {
  constexpr int lastDeafVersion = 4;
  if (leadingWholeNumber(contractVersion) > lastDeafVersion) return {};
  constexpr std::array angles{180, 0, 180, 90, -90};
  const auto index = static_cast<std::size_t>(orientation);
  const int angle = index < angles.size() ? angles.at(index) : 0;
  return "window.__defineGetter__('orientation',function(){return " + std::to_string(angle) +
         ";});(function(){var event = document.createEvent('Events'); "
         "event.initEvent('orientationchange',true, false); window.dispatchEvent(event);})();";
}

void tellRotation(const std::shared_ptr<WebView>& page, InterfaceOrientation orientation,
                  const Device& device) {
  const auto script = rotationScript(orientation, device.contractVersion());
  if (page && !script.empty()) page->evaluate(script);
}

}  // namespace tavo
