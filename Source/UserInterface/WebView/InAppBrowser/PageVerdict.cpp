#include "UserInterface/WebView/InAppBrowser/PageVerdict.h"

#include "ClickThrough/AppStore.h"

namespace tavo {

PageVerdict judgePage(const Url& url, const AppStoreConfiguration& store,
                      std::string_view systemVersion) {
  if (!endsWithAppStoreHost(url, store)) return LoadPage{};
  if (!hasStoreSheet(systemVersion)) return LeaveApplication{};
  if (const auto application = applicationIdentifier(url)) return ShowInStore{*application};
  return NowhereInStore{};
}

}  // namespace tavo
