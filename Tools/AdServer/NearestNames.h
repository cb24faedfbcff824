#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavo::adserver {

// The name among `known` that differs least from `word`, when that is little; otherwise empty.
[[nodiscard]] std::string nearestName(std::string_view word, const std::vector<std::string>& known);

// The three names that differ least, best first, with commas between them: for an error that helps.
[[nodiscard]] std::string nearestNames(std::string_view word,
                                       const std::vector<std::string>& known);

}  // namespace tavo::adserver
