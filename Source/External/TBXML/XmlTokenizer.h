#pragma once

#include <cstddef>

#include "External/TBXML/MarkupScan.h"
#include "External/TBXML/XmlReadLimits.h"
#include "External/TBXML/XmlTree.h"

namespace tavo {

// Turns the bytes in `tree.text()` into records in one pass, rewriting the bytes in place where a
// CDATA section is unwrapped. The slack behind the `size` bytes is zero.
void tokenizeXml(XmlTree& tree, std::size_t size, const XmlReadLimits& limits, MarkupScan scan);

}  // namespace tavo
