#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <tavo/Url.h>

#include "Services/Bundle.h"

namespace tavo {

// What somebody new to the library gets wrong, each as one sentence for the log that says what to
// do; none where there is nothing to say. The load goes its way all the same.

// The place of an ad server is a host and a path, without scheme.
[[nodiscard]] std::optional<std::string> mistakeInDomain(std::string_view domainName);

// No network is seen, and the ad server is on this machine.
[[nodiscard]] std::optional<std::string> hintWithoutNetwork(const Url& asked);

// The library's own resources are not where it looks: no page can be shown.
[[nodiscard]] std::optional<std::string> missingResources(const Bundle& bundle);

}  // namespace tavo
