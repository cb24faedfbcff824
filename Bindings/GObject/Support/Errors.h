#pragma once

#include <optional>

#include <tavo/Error.h>

#include "Support/Pointers.h"
#include "tavo-ads/tavo-ads-errors.h"

namespace tavo::gobject {

// The library's error in the domains of the C interface; none: there was no answer.
[[nodiscard]] ErrorPtr errorOf(const std::optional<Error>& error);

[[nodiscard]] ErrorPtr errorOf(TavoAdsError code, const char* message);

}  // namespace tavo::gobject
