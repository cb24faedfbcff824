#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Geometry.h>
#include <tavo/MRAIDState.h>
#include <tavo/PlacementType.h>
#include <tavo/WebView.h>

#include "AdController/AdGenerator/MRAIDFeature.h"
#include "AdController/AdGenerator/MraidParameters.h"
#include "AdController/AdGenerator/MraidPlace.h"
#include "AdController/AdGenerator/XMRAIDExpandProperties.h"
#include "AdController/AdGenerator/XMRAIDOrientationProperties.h"
#include "AdController/AdGenerator/XMRAIDResizeProperties.h"
#include "Runtime/SlotInspection.h"
#include "Services/RunLoop.h"

namespace tavo {

class OperationLog;
struct MraidStatement;

// Tells a creative what happens to its ad: each operation makes one JavaScript statement, writes it
// to the debug log and evaluates it in the page given. Statements reach a page in the order of the
// calls. A null web view hears nothing.
//
// Main thread only, except for reportErrorMessage.
class XMRAIDEventEmitter {
 public:
  using WebViewRef = std::shared_ptr<WebView>;

  explicit XMRAIDEventEmitter(std::shared_ptr<RunLoop> runLoop, SlotInspection inspection = {})
      : runLoop_{std::move(runLoop)}, inspection_{std::move(inspection)} {}

  void fireReadyEventForWebView(const WebViewRef& webView);
  void fireEventForEvent(std::string_view event, const WebViewRef& webView);
  void setViewable(bool viewable, const WebViewRef& webView);
  // A feature without a name is not reported.
  void setSupported(bool supported, MRAIDFeature feature, const WebViewRef& webView);
  void setPlacementType(PlacementType placement, const WebViewRef& webView);
  // Also remembers the state, whatever becomes of the statement.
  void setState(MRAIDState state, const WebViewRef& webView);
  void setScreenSize(const Size& size, const WebViewRef& webView);
  void setMaxSize(const Size& size, const WebViewRef& webView);
  void setCurrentPosition(const Rect& position, const WebViewRef& webView);
  void setDefaultPosition(const Rect& position, const WebViewRef& webView);
  void setExpandProperties(const XMRAIDExpandProperties& properties, const WebViewRef& webView);
  void setResizeProperties(const XMRAIDResizeProperties& properties, const WebViewRef& webView);
  void setOrientationProperties(const XMRAIDOrientationProperties& properties,
                                const WebViewRef& webView);

  // All of it in one statement, for a page that is treated by the standard. Remembers the state.
  void tellPlace(const MraidPlace& place, const WebViewRef& webView);

  // Any thread: from another one the statement is evaluated on the main thread soon after, without
  // making the caller wait for it.
  void reportErrorMessage(std::string_view message, std::string_view action,
                          const WebViewRef& webView);

  // The same for the script's inner bridge object, in `_webView`.
  void fireErrorEventForAction(std::string_view action, std::string_view message);

  // Evaluates a statement of the caller's own in `_webView`. Each "%@" of `format` is replaced by
  // the next argument. `completion` hears the result's text, "" when nothing was evaluated; never
  // inside this call.
  void executeJavascript(std::string_view format, const std::vector<std::string>& varArgs = {},
                         std::function<void(const std::string& result)> completion = {});

  // What `parameters` holds under `key`.
  [[nodiscard]] float floatFromParametersForKey(std::string_view key, float withDefault) const;
  [[nodiscard]] bool boolFromParametersForKey(std::string_view key) const;  // exactly "true"

  // The last state set.
  [[nodiscard]] MRAIDState state() const { return state_; }

  // Whether the page is treated as MRAID 2.0 says where that differs: its script was given the
  // switch when it was loaded.
  [[nodiscard]] bool followsStandards() const { return followsStandards_; }
  void setFollowsStandards(bool follows) { followsStandards_ = follows; }

  // The page of the generic operations and what the two readers read. The SDK sets neither.
  std::weak_ptr<WebView> _webView;
  MraidParameters parameters;

 private:
  void send(const MraidStatement& statement, const OperationLog& log, const WebViewRef& webView);
  void send(const std::string& text, const OperationLog& log, const WebViewRef& webView);
  void inspect(const MraidStatement& statement, const WebViewRef& webView) const;

  std::shared_ptr<RunLoop> runLoop_;
  SlotInspection inspection_;
  MRAIDState state_ = MRAIDState::loading;
  bool followsStandards_ = false;
};

}  // namespace tavo
