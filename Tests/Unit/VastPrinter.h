#pragma once

#include <string>

#include "Model/VASTDataModel/XVASTAd.h"

namespace tavo::test {

// The whole model as text, one field a line, indented by depth. A field that is none is left out,
// an empty list is written as such, line ends inside texts as \n.
[[nodiscard]] std::string printed(const XVASTAd& ad);

}  // namespace tavo::test
