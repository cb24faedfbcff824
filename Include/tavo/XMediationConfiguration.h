#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Url.h>

namespace tavo {

// Settings reserved for a second ad server.
struct XMediationConfiguration {
  std::optional<std::vector<std::string>> secondaryServerPreference;

  // There is no such template: empty in every case.
  [[nodiscard]] Url TAVOURLTemplateWithDomainName(std::string_view domainName,
                                                  std::string_view pageName,
                                                  std::string_view adPosition) const;
};

}  // namespace tavo
