#include "AdManager/HostMistakes.h"

namespace tavo {

std::optional<std::string> mistakeInDomain(std::string_view domainName) {
  const auto scheme = domainName.find("://");
  if (scheme == std::string_view::npos) return std::nullopt;
  return "The domain name \"" + std::string{domainName} +
         "\" has a scheme, and the library puts its own in front: give host and path only, \"" +
         std::string{domainName.substr(scheme + 3)} + "\".";
}

std::optional<std::string> hintWithoutNetwork(const Url& asked) {
  const std::string host{asked.host()};
  const bool isHere = host == "localhost" || host.ends_with(".localhost") ||
                      host.starts_with("127.") || host == "::1" || host == "[::1]";
  if (!isHere) return std::nullopt;
  return "No network is seen, so nothing is asked of " + host +
         ", which is this machine: set the platform's option assumeReachable, or "
         "TAVO_ASSUME_REACHABLE=1 in the environment.";
}

std::optional<std::string> missingResources(const Bundle& bundle) {
  if (bundle.pathForResource("CorvaneTAVOSDKMRAID", "XMraid", "js")) return std::nullopt;
  return "No HTML ads: the library's resources are not where it looks for them. Install it whole, "
         "or name their folder in the platform's option libraryResourceFolder or in "
         "TAVO_RESOURCE_DIR, by an absolute path.";
}

}  // namespace tavo
