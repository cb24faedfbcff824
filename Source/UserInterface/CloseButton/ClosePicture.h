#pragma once

#include "Values/Image.h"

namespace tavo {

// The picture on the library's close buttons, from its resources; empty when it is missing there.
// Main thread only.
[[nodiscard]] Image closePicture();

}  // namespace tavo
