#pragma once

#include <string_view>

#include "Values/Image.h"

namespace tavo {

// The picture with this name among the resources of the host and of the library: "name" stands for
// "name.png", and a name with its ending for itself. Empty when there is none. Main thread only.
[[nodiscard]] Image namedImage(std::string_view name);

}  // namespace tavo
