#pragma once

#include <string>
#include <string_view>

#include <tavo/Url.h>

#include "Services/CookieStore.h"

namespace tavo {

// A page and the address that it acts for.
struct BasedPage {
  std::string html;
  Url base;  // empty: it acts for nobody
};

// The page of an answer from `served` that names `base`. One of another site only completes its
// relative addresses with it: cookies, storage and scripts of that site are not for it. A page that
// names a base of its own keeps that.
[[nodiscard]] BasedPage confinedPage(std::string html, const Url& base, const Url& served,
                                     const CookieStore& sites);

}  // namespace tavo
