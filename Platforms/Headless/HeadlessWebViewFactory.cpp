#include "Headless/HeadlessWebViewFactory.h"

namespace tavo::headless {

std::shared_ptr<WebView> HeadlessWebViewFactory::create(const Rect& frame,
                                                        const WebViewOptions& /*options*/) {
  auto view = std::make_shared<HeadlessWebView>(frame, runLoop_);
  view->holdLoads(holdLoads);
  view->onScript = onScript;
  last_ = view;
  ++created;
  return view;
}

}  // namespace tavo::headless
