#pragma once

#include <string>
#include <vector>

#include "Sample.h"

namespace tavo::benchmark {

// A picture (SVG) with one curve over the minutes for each thing measured, each from zero.
[[nodiscard]] std::string plot(const std::vector<Sample>& samples);

}  // namespace tavo::benchmark
