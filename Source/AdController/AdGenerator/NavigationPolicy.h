#pragma once

#include <string_view>

#include <tavo/MobileAdTypes.h>
#include <tavo/WebView.h>

namespace tavo {

// What becomes of a navigation that a creative starts.
enum class NavigationDecision {
  runCommand,     // a command to the SDK: refuse the load, carry the command out
  openAsClick,    // a click: refuse the load, follow it through the ad view
  allow,          // load it in the page
  refuse,         // nothing comes of it
  followRefresh,  // load it: the document's own meta refresh, which is used up with it
};

struct NavigationFacts {
  MobileAdSubTypes subType = MobileAdSubTypes::unknown;
  bool userTapped = false;         // a tap has ended and no navigation was decided since
  bool metaRefreshExists = false;  // the last finished document sends itself elsewhere
};

[[nodiscard]] NavigationDecision decideNavigation(const Navigation& navigation,
                                                  const NavigationFacts& facts);

// Where a clicked URL goes.
enum class ClickRoute { customUrl, dialler, sms, email, faceTime, browser };

// Tested in this order: the host's own scheme, then the prefixes that a creative may dial, write or
// call with. Everything else, App Store links included, is for the browser.
[[nodiscard]] ClickRoute routeClick(const Url& url);

}  // namespace tavo
