#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Color.h>
#include <tavo/Export.h>

namespace tavo {

// Toolbar settings of the in-app browser, shared by all browsers of the runtime and read each time
// one opens. Main thread only. The buttons have numbers: 0 close, 1 back, 2 forward, 3 reload,
// 4 open in the system's browser.
struct TAVO_EXPORT XBrowserConfiguration {
  // One call of the operations below: "Image", image name, button number; or "Visibility", "YES" or
  // "NO", button number.
  using ToolbarDetail = std::array<std::string, 3>;

  std::optional<Color> toolbarBGColor;  // none: the platform's own
  // Name of a picture among the host's resources, painted behind the buttons; none: no picture.
  std::optional<std::string> toolbarBGImageName;
  unsigned toolbarPosition = 1;  // 0: at the top; any other: at the bottom
  // In the order of the calls; empty: the buttons 0 to 3 are there, with the library's pictures.
  std::vector<ToolbarDetail> toolbarDetails;
  int barStyle = 1;  // handed to the platform's toolbar

  // Both append an entry, and earlier entries for the same button stay. `imageName` names a picture
  // among the host's resources, and an empty one no picture. A `value` of true hides the button,
  // one of false shows it, which button 4 needs.
  void setToolbarButton(unsigned button, const std::string& imageName);
  void hideToolbarButton(unsigned button, bool value);
};

}  // namespace tavo
