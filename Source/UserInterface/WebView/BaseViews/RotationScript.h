#pragma once

#include <memory>
#include <string>

#include <tavo/WebView.h>

#include "Services/Application.h"

namespace tavo {

class Device;

// What a page is told about the screen's new orientation where it does not hear of rotations by
// itself; none where it does, which is on systems after the fourth.
[[nodiscard]] std::string rotationScript(InterfaceOrientation orientation,
                                         const std::string& contractVersion);

// Tells `page`, which may be null, on this device's system.
void tellRotation(const std::shared_ptr<WebView>& page, InterfaceOrientation orientation,
                  const Device& device);

}  // namespace tavo
