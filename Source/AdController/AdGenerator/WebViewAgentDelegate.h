#pragma once

#include <functional>

#include <tavo/Error.h>
#include <tavo/Geometry.h>
#include <tavo/Url.h>
#include <tavo/WebView.h>

namespace tavo {

class XWebViewAgent;

// What a web view agent reports. Main thread.
struct WebViewAgentDelegate {
  // Once per HTML load, after the first finished load without meta refresh; false refuses the ad.
  std::function<bool(WebView&)> webViewDidFinishRender{};
  // The creative is on the screen.
  std::function<void(XWebViewAgent&)> webViewAgentDidFinishLoad{};
  // The load failed, rendering was refused, or the page's process is gone.
  std::function<void(const Error&)> webViewAgentDidFailWithError{};
  // The creative opened an address of the host's own scheme.
  std::function<void(const Url&)> webViewOpenCustomURL{};
  // Never told: the ad view itself reports that it has expanded or collapsed.
  std::function<void(const Rect& frame)> webViewAgentDidExpandAdToFrame{};
  std::function<void(const Rect& frame)> webViewAgentDidCollapseAdToFrame{};
};

}  // namespace tavo
