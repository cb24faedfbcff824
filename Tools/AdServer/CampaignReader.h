#pragma once

#include <string>
#include <string_view>

#include "AdServer/Campaign.h"

namespace tavo::adserver {

// The campaign of this name as its `campaign.json` describes it; an empty text gives the defaults.
// People edit these files by hand, so the first thing that is wrong ends up in `problem`, as
// "campaign.json:<line>: ..." with what was expected there.
[[nodiscard]] Campaign readCampaign(std::string name, std::string_view json);

// The name among `known` that differs least from `word`, when that is little; otherwise empty.
template <typename Names>
[[nodiscard]] std::string nearestName(std::string_view word, const Names& known);

// The number of letters to add, drop or change to get from one text to the other.
[[nodiscard]] std::size_t editDistance(std::string_view from, std::string_view to);

template <typename Names>
std::string nearestName(std::string_view word, const Names& known) {
  std::string nearest;
  std::size_t least = word.size() / 3 + 2;  // more than that is another word
  for (const auto& name : known) {
    const auto distance = editDistance(word, name);
    if (distance >= least) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

}  // namespace tavo::adserver
