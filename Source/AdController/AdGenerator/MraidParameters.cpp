#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

std::string_view valueOf(const MraidParameters& parameters, std::string_view key) {
  const auto found = parameters.find(key);
  return found == parameters.end() ? std::string_view{} : std::string_view{found->second};
}

}  // namespace tavo
