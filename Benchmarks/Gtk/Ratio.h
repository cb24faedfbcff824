#pragma once

#include <string>
#include <vector>

namespace tavo::benchmark {

[[nodiscard]] double median(std::vector<double> values);

// One line of the report: the median of our way beside that of the bare one, their ratio, and
// whether it stays within `bound`.
void printRatio(const std::string& what, const std::vector<double>& ours,
                const std::vector<double>& bare, const char* unit, double bound);

}  // namespace tavo::benchmark
