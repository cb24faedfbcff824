#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavo::gtk {

// Where distributions keep the list of the world's mobile networks, where it is installed.
inline constexpr const char* providerDatabase =
    "/usr/share/mobile-broadband-provider-info/serviceproviders.xml";

// The country, in two small letters, whose networks have the mobile country code `code`, by the
// list of networks in `file`. Some codes serve the islands around a country too: the country with
// most of its networks is told. None without the file, for a file of more than eight megabytes or
// that is no such list, and for a code that it does not know. Reads the whole file: for threads
// that may wait.
[[nodiscard]] std::optional<std::string> countryOfNetworks(const std::string& file,
                                                           std::string_view code);

}  // namespace tavo::gtk
