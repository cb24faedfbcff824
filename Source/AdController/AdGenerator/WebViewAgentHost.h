#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/MobileAdTypes.h>
#include <tavo/Url.h>
#include <tavo/WebView.h>
#include <tavo/XAdSlotConfiguration.h>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "AdController/AdGenerator/PictureSaver.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"
#include "AdController/AdGenerator/XMRAIDResizeProperties.h"

namespace tavo {

// What a web view agent needs of the view that shows its page. `webView` is the agent's page in
// each operation. Main thread only.
class WebViewAgentHost : public virtual AdViewIdentity {
 public:
  using PageRef = std::shared_ptr<WebView>;

  // Null once the view has let go of its settings.
  [[nodiscard]] virtual std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const = 0;
  [[nodiscard]] virtual MobileAdSubTypes mobileAdSubTypes() const = 0;
  // Whether its pages are treated as MRAID 2.0 says where that differs; asked when one is loaded.
  [[nodiscard]] virtual bool followsStandards() const = 0;
  // A saver for one creative; `failed` may be called as long as the saver lives.
  [[nodiscard]] virtual std::shared_ptr<PictureSaver> makePictureManager(
      PictureSaver::Failed failed) = 0;

  // The page's script is there and waits for the layout report that makes it ready. The view
  // speaks to the page through `emitter` from now on.
  virtual void handleInitMRAIDAdWithWebView(const PageRef& webView,
                                            const std::shared_ptr<XMRAIDEventEmitter>& emitter) = 0;
  // What the creative asks for; the view refuses what its state does not allow.
  // False: the expansion was refused, and the creative has heard why.
  virtual bool expandToFrame(const Rect& frame, bool isCustomClose, bool isOrientationAllowed,
                             const PageRef& webView) = 0;
  // The same to a page of another address, which stands in a view of its own. What becomes of it
  // the creative hears.
  virtual void expandToPage(const Url& page, bool isCustomClose, const PageRef& webView) = 0;
  virtual void collapseToFrame(const Rect& frame) = 0;
  // None: the creative has never said how large.
  virtual void resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                        const PageRef& webView) = 0;
  virtual void setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) = 0;
  virtual void setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                            const PageRef& webView) = 0;
  virtual void updateCurrentPositionOfWebView(const PageRef& webView) = 0;

  // What a creative may ask for beside that. Each operation first asks the host, and carries the
  // action out only when the host has nothing against it; a refusal, and a system that cannot do
  // it, end the action silently. Agent and view may be gone afterwards.
  virtual void openUrlInBrowser(const Url& url) = 0;
  virtual void openDiallerWithUrl(const Url& url) = 0;
  virtual void sendSMSWithUrl(const Url& url) = 0;
  virtual void sendEmailWithUrl(const Url& url) = 0;
  virtual void makeFaceTimeCallWithUrl(const Url& url) = 0;
  // `event` is the creative's description of the event, the text of a script object. What goes
  // wrong is reported to the creative.
  virtual void createCalenderEvent(const std::string& event) = 0;
  // Plays a video over the whole window; the host is not asked.
  virtual void handlePlayVideoWithURL(const Url& url) = 0;

  // The page has been put into the view.
  virtual void webViewJoinsScreen(const PageRef& webView) = 0;
  // The page has no right to what it covers of the screen: its process is gone, or it has only just
  // loaded.
  virtual void webViewLeavesScreen(const PageRef& webView) = 0;
};

}  // namespace tavo
