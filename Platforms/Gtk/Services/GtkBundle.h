#pragma once

#include <string>
#include <vector>

#include "Services/Bundle.h"

namespace tavo::gtk {

// The library's resource files in folders on disk; a resource bundle "Name" is the folder
// "Name.bundle".
class GtkBundle : public Bundle {
 public:
  // Looks into `roots` in their order.
  explicit GtkBundle(std::vector<std::string> roots) : roots_{std::move(roots)} {}

  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view bundle,
                                                           std::string_view name,
                                                           std::string_view type) const override;
  [[nodiscard]] std::optional<std::string> contents(const std::string& path) const override;

 private:
  std::vector<std::string> roots_;
};

}  // namespace tavo::gtk
