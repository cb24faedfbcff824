#pragma once

#include <tavo/VastCreative.h>

#include "AdController/ResponseParser/StandardsVast/VastWords.h"
#include "External/TBXML/XTBXML.h"

namespace tavo {

// Reads one Creative element with all that stands in it.
[[nodiscard]] VastCreative readVastCreative(const XTBXMLElement* element, VastWords& words);

}  // namespace tavo
