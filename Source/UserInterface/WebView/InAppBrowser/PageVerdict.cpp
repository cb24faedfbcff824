#include "UserInterface/WebView/InAppBrowser/PageVerdict.h"

#include <algorithm>
#include <array>

#include "ClickThrough/AppStore.h"
#include "Values/Text.h"

namespace tavo {

namespace {

bool isPage(const Url& url) {
  constexpr std::array schemes{"http", "https", "about", "data", "blob"};
  return std::any_of(schemes.begin(), schemes.end(),
                     [&](const char* scheme) { return equalsIgnoringCase(url.scheme(), scheme); });
}

}  // namespace

PageVerdict judgePage(const Navigation& navigation, const AppStoreConfiguration& store,
                      std::string_view contractVersion) {
  const Url& url = navigation.url;
  if (endsWithAppStoreHost(url, store)) {
    if (!hasStoreSheet(contractVersion)) return LeaveApplication{};
    if (const auto application = applicationIdentifier(url)) return ShowInStore{*application};
    return NowhereInStore{};
  }
  if (isPage(url)) return LoadPage{};
  if (navigation.type == NavigationType::linkClicked) return LeaveApplication{};
  return NoPage{};
}

}  // namespace tavo
