#pragma once

#include <string>

#include <tavo/Error.h>
#include <tavo/Url.h>

namespace tavo {

// The page in the place of one that could not be loaded: which it was, why, and a way to try again.
// Neither the address nor the reason can add markup to it.
[[nodiscard]] std::string errorPage(const Url& page, const Error& error);

}  // namespace tavo
