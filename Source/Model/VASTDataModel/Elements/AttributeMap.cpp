#include "Model/VASTDataModel/Elements/AttributeMap.h"

#include <algorithm>

#include "External/TBXML/NameMatch.h"

namespace tavo {

std::optional<std::string_view> AttributeMap::find(std::string_view name) const {
  const auto found =
      std::find_if(attributes_.rbegin(), attributes_.rend(),
                   [name](const auto& attribute) { return isSameName(attribute.first, name); });
  return found != attributes_.rend() ? std::optional{found->second} : std::nullopt;
}

}  // namespace tavo
