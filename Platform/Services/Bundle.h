#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <tavo/Image.h>

namespace tavo {

// Finds the files that come with the library. Main thread only.
class Bundle {
 public:
  virtual ~Bundle() = default;

  // The path of the resource `name`.`type` in the resource bundle `bundle` ("" for the library's
  // own folder); none when there is no such file.
  [[nodiscard]] virtual std::optional<std::string> pathForResource(std::string_view bundle,
                                                                   std::string_view name,
                                                                   std::string_view type) const = 0;

  // The bytes of the file at a path that this bundle gave out; none when it cannot be read.
  [[nodiscard]] virtual std::optional<std::string> contents(const std::string& path) const = 0;
};

}  // namespace tavo
