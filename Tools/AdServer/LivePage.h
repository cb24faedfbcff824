#pragma once

#include <string_view>

namespace tavo::adserver {

// The page at "/": campaigns and requests as they come. Complete in itself; Page/live.html is its
// source, which the build puts here.
[[nodiscard]] std::string_view livePage();

}  // namespace tavo::adserver
