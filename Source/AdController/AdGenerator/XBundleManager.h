#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Runtime/Environment.h"
#include "Services/Bundle.h"

namespace tavo {

// Finds the files that come with the library. Main thread only.
class XBundleManager {
 public:
  [[nodiscard]] static XBundleManager& sharedManager();

  explicit XBundleManager(Environment& environment) : bundle_{environment.platform().bundle} {}

  // The folder of the library's own resources; none when they are not there.
  [[nodiscard]] std::optional<std::string> bundlePath() const;

  // The path of the library's own resource `name`.`type`, or of one in its resource bundle
  // `bundle`; none when there is no such file.
  [[nodiscard]] std::optional<std::string> bundlePathForResource(
      std::string_view name, std::string_view type, std::string_view bundle = {}) const;

 private:
  const std::shared_ptr<Bundle> bundle_;
};

}  // namespace tavo
