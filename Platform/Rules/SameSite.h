#pragma once

#include <tavo/Url.h>

#include "Rules/CookieRules.h"

namespace tavo {

// Whether what `served` has sent may act for `base`: both are of one site, by the list of public
// suffixes, and `base` is not of the encrypted web when `served` was not, since anybody on the way
// could have written what it sent. Numeric addresses and hosts of one word are sites of their own.
[[nodiscard]] bool mayActFor(const Url& served, const Url& base,
                             const IsPublicSuffix& isPublicSuffix);

}  // namespace tavo
