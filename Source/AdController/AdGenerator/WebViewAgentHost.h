#pragma once

#include <memory>
#include <optional>

#include <tavo/MobileAdTypes.h>
#include <tavo/PlacementType.h>
#include <tavo/WebView.h>

#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"
#include "AdController/AdGenerator/XMRAIDResizeProperties.h"
#include "ClickToAction/ClickActionsHost.h"
#include "ClickToAction/ClickThroughHost.h"

namespace tavo {

// What a web view agent needs of the view that shows its page. `webView` is the agent's page in
// each operation. Main thread only.
class WebViewAgentHost : public ClickThroughHost, public ClickActionsHost {
 public:
  using PageRef = std::shared_ptr<WebView>;

  [[nodiscard]] virtual MobileAdSubTypes mobileAdSubTypes() const = 0;
  // The view itself: the page becomes its subview.
  [[nodiscard]] virtual View& sceneView() = 0;
  [[nodiscard]] virtual PlacementType placementType() const { return PlacementType::inlined; }

  // The page's script is there and waits for the layout report that makes it ready. The view
  // speaks to the page through `emitter` from now on.
  virtual void handleInitMRAIDAdWithWebView(
      const PageRef& /*webView*/, const std::shared_ptr<XMRAIDEventEmitter>& /*emitter*/) {}
  // What the creative asks for; the view refuses what its state does not allow.
  virtual void expandToFrame(const Rect& /*frame*/, bool /*isCustomClose*/,
                             bool /*isOrientationAllowed*/, const PageRef& /*webView*/) {}
  virtual void collapseToFrame(const Rect& /*frame*/) {}
  // None: the creative has never said how large.
  virtual void resizeAd(const std::optional<XMRAIDResizeProperties>& /*properties*/,
                        const PageRef& /*webView*/) {}
  virtual void setExpandPropertiesWithDict(const XMRAIDExpandProperties& /*properties*/) {}
  virtual void setOrientationPropertiesWith(const XMRAIDOrientationProperties& /*properties*/,
                                            const PageRef& /*webView*/) {}
  virtual void updateCurrentPositionOfWebView(const PageRef& /*webView*/) {}
  // The page has no right to what it covers of the screen: its process is gone, or it has only just
  // loaded.
  virtual void webViewLeavesScreen(const PageRef& /*webView*/) {}
};

}  // namespace tavo
