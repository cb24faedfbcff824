#pragma once

#include <string>
#include <string_view>

#include "AdServer/Campaign.h"

namespace tavo::adserver {

// The campaign of this name as its `campaign.json` describes it; an empty text gives the defaults.
// People edit these files by hand, so the first thing that is wrong ends up in `problem`, as
// "campaign.json:<line>: ..." with what was expected there.
[[nodiscard]] Campaign readCampaign(std::string name, std::string_view json);

}  // namespace tavo::adserver
