#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavo {

// Finds the files that come with the library. Main thread only.
class XBundleManager {
 public:
  [[nodiscard]] static XBundleManager& sharedManager();

  // The path of the library's own resource `name`.`type`, or of one in its resource bundle
  // `bundle`; none when there is no such file.
  [[nodiscard]] static std::optional<std::string> bundlePathForResource(
      std::string_view name, std::string_view type, std::string_view bundle = {});
};

}  // namespace tavo
