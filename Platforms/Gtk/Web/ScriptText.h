#pragma once

#include <string>
#include <string_view>

namespace tavo::gtk {

// `text` (UTF-8) as a script's string literal, quotes included.
[[nodiscard]] std::string quotedForScript(std::string_view text);

}  // namespace tavo::gtk
