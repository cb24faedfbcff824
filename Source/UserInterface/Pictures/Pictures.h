#pragma once

#include <string_view>

#include <tavo/Image.h>
#include <tavo/Platform.h>

namespace tavo {

// Pictures from files that come with the library or with the host. An empty picture stands for a
// file that is missing or that is none. Main thread only.

// The library's own resource `name`.`type`.
[[nodiscard]] Image bundlePicture(std::string_view name, std::string_view type,
                                  const Platform& platform);

// The picture on the library's close buttons.
[[nodiscard]] Image closePicture(const Platform& platform);

// The picture with this name among the resources of the host and of the library: "name" stands for
// "name.png", and a name with its ending for itself.
[[nodiscard]] Image namedPicture(std::string_view name, const Platform& platform);

}  // namespace tavo
