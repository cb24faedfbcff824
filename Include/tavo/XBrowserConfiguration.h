#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Color.h>

namespace tavo {

// Toolbar settings of the in-app browser.
struct XBrowserConfiguration {
  // Three values: "Image", image name, button number; or "Visibility", "YES" or "NO", button
  // number.
  using ToolbarDetail = std::array<std::string, 3>;

  std::optional<Color> toolbarBGColor;
  std::optional<std::string> toolbarBGImageName;  // a picture among the host's resources
  unsigned toolbarPosition = 1;                   // the browser says what the codes mean
  std::vector<ToolbarDetail> toolbarDetails;      // in the order of the calls; empty: as delivered
  int barStyle = 1;                               // handed to the platform's toolbar

  // Both append an entry; earlier entries for the same button stay.
  void setToolbarButton(unsigned button, const std::string& imageName);
  void hideToolbarButton(unsigned button, bool value);
};

}  // namespace tavo
