#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Export.h>
#include <tavo/Url.h>

namespace tavo {

// Settings reserved for a second ad server. A host may keep them; nothing in the library reads
// them yet.
struct TAVO_EXPORT XMediationConfiguration {
  // Servers in the order in which they would be asked.
  std::optional<std::vector<std::string>> secondaryServerPreference;

  // The address of a second server for one ad. There is no such template: empty in every case.
  [[nodiscard]] Url TAVOURLTemplateWithDomainName(std::string_view domainName,
                                                  std::string_view pageName,
                                                  std::string_view adPosition) const;
};

}  // namespace tavo
