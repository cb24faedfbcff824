#include "Rules/SameSite.h"

#include <string>
#include <string_view>

#include "Values/Text.h"

namespace tavo {

namespace {

// The shortest domain above the host, itself included, that is nobody else's.
std::string_view siteOf(std::string_view host, const IsPublicSuffix& isPublicSuffix) {
  if (isAddress(host)) return host;
  for (std::string_view site = host;;) {
    const auto dot = site.find('.');
    if (dot == std::string_view::npos || isPublicSuffix(site.substr(dot + 1))) return site;
    site.remove_prefix(dot + 1);
  }
}

std::string plainHost(const Url& url) {
  std::string host = hostOf(url);
  if (host.ends_with('.')) host.pop_back();
  return host;
}

}  // namespace

bool mayActFor(const Url& served, const Url& base, const IsPublicSuffix& isPublicSuffix) {
  if (!served.isHttp() || !base.isHttp()) return false;
  const bool rises =
      equalsIgnoringCase(base.scheme(), "https") && !equalsIgnoringCase(served.scheme(), "https");
  const std::string from = plainHost(served);
  const std::string to = plainHost(base);
  if (rises || from.empty() || to.empty()) return false;
  return from == to || siteOf(from, isPublicSuffix) == siteOf(to, isPublicSuffix);
}

}  // namespace tavo
