#pragma once

#include <tavo/Image.h>

namespace sample {

// A picture of so many pixels a side: a sun over the sea.
[[nodiscard]] tavo::Image sunset(int side);

}  // namespace sample
