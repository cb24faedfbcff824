#pragma once

#include <webkit/webkit.h>

#include <string>

#include <tavo/WebView.h>

namespace tavo::gtk {

// What the engine's policy questions say, and what can be told from them alone.

// The URL of a question about a navigation or a new window, as the engine writes it; "" for none.
[[nodiscard]] std::string urlText(WebKitPolicyDecision* navigation);
[[nodiscard]] NavigationType navigationType(WebKitPolicyDecision* navigation);
// The server has sent the main document on to another URL.
[[nodiscard]] bool isRedirect(WebKitPolicyDecision* navigation);

// The URL as the engine will write it in its questions.
[[nodiscard]] std::string engineText(const Url& url);
// Whether the engine may fetch it. Everything else it could only fail at, or, like a file, should
// never be asked for by a page out of the network.
[[nodiscard]] bool canBeFollowed(const Url& url);

// The document of a response can be shown and does not ask to be saved as a file.
[[nodiscard]] bool canBeShown(WebKitResponsePolicyDecision* response);

}  // namespace tavo::gtk
