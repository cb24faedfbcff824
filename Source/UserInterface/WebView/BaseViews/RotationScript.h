#pragma once

#include <string>

#include "Services/Application.h"

namespace tavo {

// What a page is told about the screen's new orientation where it does not hear of rotations by
// itself; none where it does, which is on systems after the fourth.
[[nodiscard]] std::string rotationScript(InterfaceOrientation orientation,
                                         const std::string& systemVersion);

}  // namespace tavo
