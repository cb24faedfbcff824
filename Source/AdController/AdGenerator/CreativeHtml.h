#pragma once

#include <string>
#include <string_view>

namespace tavo {

// How an HTML creative is made ready for the web view.

// True for a fragment: text without "<html>" or without "<head>".
// Quirk: the name says the opposite, and both searches are to the letter, so a document that writes
// its tags in capitals or with attributes counts as a fragment. Served creatives are tuned to that.
[[nodiscard]] bool isMRAIDScriptWrappedInHTML(std::string_view html);

// A fragment made into a document that fills the page without margins.
[[nodiscard]] std::string HTMLFromMRAIDScript(std::string_view fragment);

// The creative as a document whose head begins with a script tag for `scriptUrl`, also when the
// creative names the script itself: loading it twice is harmless.
[[nodiscard]] std::string HTMLWithJavaScriptBridge(std::string_view html,
                                                   std::string_view scriptUrl);

// Whether the markup holds a meta tag that sends the document elsewhere after less than ten
// seconds. Quirk: the delay is a single digit; creatives with longer ones are reported as shown
// before they move on.
[[nodiscard]] bool hasMetaRefresh(std::string_view markup);

}  // namespace tavo
