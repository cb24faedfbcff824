#include "AdController/AdGenerator/NavigationPolicy.h"

#include <array>
#include <utility>

namespace tavo {

NavigationDecision decideNavigation(const Navigation& navigation, const NavigationFacts& facts) {
  const std::string_view url = navigation.url.text();
  const bool isHttp = url.starts_with("http://") || url.starts_with("https://");
  const bool isWindow = navigation.type == NavigationType::newWindow;
  if (isWindow && (!facts.userTapped || url == blankPage)) return NavigationDecision::refuse;
  if (navigation.url.scheme() == "mraid") return NavigationDecision::runCommand;
  if (isWindow) return NavigationDecision::openAsClick;
  if (navigation.type == NavigationType::linkClicked && isHttp) {
    return NavigationDecision::openAsClick;
  }
  // Redirect ads are pages of somebody else's: they navigate freely.
  if (facts.subType == MobileAdSubTypes::redirectHtmlBanner ||
      facts.subType == MobileAdSubTypes::redirectInterstitial) {
    return NavigationDecision::allow;
  }
  const bool scriptedAfterTap = navigation.type == NavigationType::other && facts.userTapped &&
                                url != blankPage && navigation.url == navigation.mainDocumentUrl;
  if (!scriptedAfterTap) return NavigationDecision::allow;
  return facts.metaRefreshExists ? NavigationDecision::followRefresh
                                 : NavigationDecision::openAsClick;
}

ClickRoute routeClick(const Url& url) {
  static constexpr std::array<std::pair<std::string_view, ClickRoute>, 4> prefixes{
      {{"tel:", ClickRoute::dialler},
       {"sms:", ClickRoute::sms},
       {"mailto:", ClickRoute::email},
       {"facetime:", ClickRoute::faceTime}}};
  if (url.scheme() == "app") return ClickRoute::customUrl;
  for (const auto& [prefix, route] : prefixes) {
    if (std::string_view{url.text()}.starts_with(prefix)) return route;
  }
  return ClickRoute::browser;
}

}  // namespace tavo
