#include <tavo/XBrowserConfiguration.h>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XBrowserConfiguration::setToolbarButton(unsigned button, const std::string& imageName) {
  const OperationLog log{"-[XBrowserConfiguration setToolbarButton:withImageName:]"};
  toolbarDetails.push_back({"Image", imageName, std::to_string(button)});
}

void XBrowserConfiguration::hideToolbarButton(unsigned button, bool value) {
  const OperationLog log{"-[XBrowserConfiguration hideToolbarButton:withValue:]"};
  toolbarDetails.push_back({"Visibility", value ? "YES" : "NO", std::to_string(button)});
}

}  // namespace tavo
