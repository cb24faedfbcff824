#include "UserInterface/WebView/BaseViews/RotationScript.h"

#include <array>
#include <cstdlib>

namespace tavo {

std::string rotationScript(InterfaceOrientation orientation, const std::string& systemVersion) {
  constexpr int lastDeafVersion = 4;
  if (std::atoi(systemVersion.c_str()) > lastDeafVersion) return {};
  constexpr std::array angles{180, 0, 180, 90, -90};
  const auto index = static_cast<std::size_t>(orientation);
  const int angle = index < angles.size() ? angles.at(index) : 0;
  return "window.__defineGetter__('orientation',function(){return " + std::to_string(angle) +
         ";});(function(){var event = document.createEvent('Events'); "
         "event.initEvent('orientationchange',true, false); window.dispatchEvent(event);})();";
}

}  // namespace tavo
