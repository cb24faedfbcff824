#pragma once

#include <gdk/gdk.h>

#include <map>
#include <optional>
#include <string>

#include <tavo/ClickToAction.h>
#include <tavo/Image.h>
#include <tavo/Location.h>

namespace tavo::gobject {

// Values of the library and of the C interface, both ways. Variants are new and floating, or null
// where there is nothing; null is nothing the other way, too.

// a{ss}
[[nodiscard]] GVariant* variantOf(const std::map<std::string, std::string>& keywords);
[[nodiscard]] std::map<std::string, std::string> keywordsOf(GVariant* variant);

// (ddd): latitude, longitude, accuracy.
[[nodiscard]] GVariant* variantOf(const std::optional<Location>& location);
[[nodiscard]] std::optional<Location> locationOf(GVariant* variant);

// a{sv}: what is known about a click. Unknown keys and values of other types are left away.
[[nodiscard]] GVariant* variantOf(const ClickToActionParameters& parameters);
[[nodiscard]] ClickToActionParameters parametersOf(GVariant* variant);

[[nodiscard]] Image imageOf(GdkTexture* texture);

}  // namespace tavo::gobject
