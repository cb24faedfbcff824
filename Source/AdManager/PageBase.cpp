#include "AdManager/PageBase.h"

#include "AdController/AdGenerator/CreativeHtml.h"
#include "Rules/SameSite.h"
#include "Values/Text.h"

namespace tavo {

BasedPage confinedPage(std::string html, const Url& base, const Url& served,
                       const CookieStore& sites) {
  const auto isPublicSuffix = [&](std::string_view domain) { return sites.isPublicSuffix(domain); };
  if (base.empty() || mayActFor(served, base, isPublicSuffix)) return {std::move(html), base};
  if (base.isHttp() && !contains(lowerCased(html), "<base")) {
    constexpr std::string_view head = "<head>";
    const std::size_t at = isMRAIDScriptWrappedInHTML(html) ? 0 : html.find(head) + head.size();
    html.insert(at, "<base href=\"" + asMarkup(base.text()) + "\">");
  }
  return {std::move(html), {}};
}

}  // namespace tavo
