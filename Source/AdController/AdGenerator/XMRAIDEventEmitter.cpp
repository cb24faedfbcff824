#include "AdController/AdGenerator/XMRAIDEventEmitter.h"

#include "AdController/AdGenerator/MraidStatement.h"
#include "ErrorHandler/OperationLog.h"
#include "Utilities/NumberText.h"

namespace tavo {

// The statement is logged as it is, safe or not: that is how a broken creative is found.
void XMRAIDEventEmitter::send(const MraidStatement& statement, const OperationLog& log,
                              const WebViewRef& webView) {
  log.debug("\n\n", statement.text);
  inspect(statement, webView);
  if (webView && statement.isSafe) webView->evaluate(statement.text);
}

// For statements whose texts are all our own.
void XMRAIDEventEmitter::send(const std::string& text, const OperationLog& log,
                              const WebViewRef& webView) {
  send(MraidStatement{text}, log, webView);
}

void XMRAIDEventEmitter::inspect(const MraidStatement& statement, const WebViewRef& webView) const {
  if (!inspection_.isOn()) return;
  std::string outcome = "evaluated";
  if (!statement.isSafe) outcome = "held back: a text in it would end its quotes";
  if (!webView) outcome = "nobody hears it: there is no page";
  inspection_.tell(InspectionKind::statement, statement.text, {{"outcome", outcome}});
}

void XMRAIDEventEmitter::fireReadyEventForWebView(const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter fireReadyEventForWebView:]"};
  send(MraidStatement::make("mraid.fireEvent('%@');", {"ready"}), log, webView);
}

void XMRAIDEventEmitter::fireEventForEvent(std::string_view event, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter fireEventForEvent:webView:]"};
  send(MraidStatement::make("mraid.fireEvent('%@');", {event}), log, webView);
}

void XMRAIDEventEmitter::setViewable(bool viewable, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setViewable:forWebView:]"};
  send(MraidStatement::make("mraid.setViewable(%@);", {trueOrFalse(viewable)}), log, webView);
}

void XMRAIDEventEmitter::setSupported(bool supported, MRAIDFeature feature,
                                      const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setSupported:forFeature:forWebView:]"};
  if (nameOf(feature).empty()) return;
  send(MraidStatement::make("mraid.setSupports('%@',%@);",
                            {nameOf(feature), trueOrFalse(supported)}),
       log, webView);
}

void XMRAIDEventEmitter::setPlacementType(PlacementType placement, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setPlacementType:forWebView:]"};
  send(MraidStatement::make("mraid.setPlacementType('%@');", {nameOf(placement)}), log, webView);
}

void XMRAIDEventEmitter::setState(MRAIDState state, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setState:forWebView:]"};
  if (inspection_.isOn()) {
    inspection_.tell(InspectionKind::state, std::string{nameOf(state)},
                     {{"before", std::string{nameOf(state_)}}});
  }
  state_ = state;
  send(MraidStatement::make("mraid.setState('%@');", {nameOf(state)}), log, webView);
}

void XMRAIDEventEmitter::setScreenSize(const Size& size, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setScreenSize:forWebView:]"};
  send("mraid.setScreenSize({" + members(size) + "});", log, webView);
}

void XMRAIDEventEmitter::setMaxSize(const Size& size, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setMaxSize:forWebView:]"};
  send("mraid.setMaxSize({" + members(size) + "});", log, webView);
}

void XMRAIDEventEmitter::setCurrentPosition(const Rect& position, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setCurrentPosition:forWebView:]"};
  send("mraid.setCurrentPosition({" + members(position) + " });", log, webView);
}

void XMRAIDEventEmitter::setDefaultPosition(const Rect& position, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setDefaultPosition:forWebView:]"};
  send("mraid.setDefaultPosition({" + members(position) + " });", log, webView);
}

void XMRAIDEventEmitter::setExpandProperties(const XMRAIDExpandProperties& properties,
                                             const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setExpandProperties:forWebView:]"};
  send("mraid.setExpandProperties(" + properties.description() + ");", log, webView);
}

void XMRAIDEventEmitter::setResizeProperties(const XMRAIDResizeProperties& properties,
                                             const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setResizeProperties:forWebView:]"};
  send("mraid.setResizeProperties(" + properties.description() + ");", log, webView);
}

void XMRAIDEventEmitter::setOrientationProperties(const XMRAIDOrientationProperties& properties,
                                                  const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter setOrientationProperties:forWebView:]"};
  send("mraid.setOrientationProperties(" + properties.description() + ");", log, webView);
}

void XMRAIDEventEmitter::tellPlace(const MraidPlace& place, const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter tellPlace:forWebView:]"};
  if (inspection_.isOn() && place.state != state_) {
    inspection_.tell(InspectionKind::state, std::string{nameOf(place.state)},
                     {{"before", std::string{nameOf(state_)}}});
  }
  state_ = place.state;
  std::string text = "mraid.setPlace({state:'" + std::string{nameOf(place.state)} + "',screen:{";
  text += members(place.screen) + "},max:{" + members(place.room);
  text += "},normal:{" + members(place.defaultPosition);
  text += "},current:{" + members(place.currentPosition) + "},viewable:";
  text.append(trueOrFalse(place.isViewable)).append("});");
  send(text, log, webView);
}

void XMRAIDEventEmitter::reportErrorMessage(std::string_view message, std::string_view action,
                                            const WebViewRef& webView) {
  const OperationLog log{"-[XMRAIDEventEmitter reportErrorMessage:forAction:forWebView:]"};
  const auto statement =
      MraidStatement::make("mraid.fireErrorEvent('%@','%@');", {message, action});
  if (runLoop_->isMainThread()) {
    send(statement, log, webView);
    return;
  }
  log.debug("\n\n", statement.text);
  if (!statement.isSafe) return;
  // The page is held weakly: the last reference to a view must be dropped on the main thread.
  runLoop_->post([text = statement.text, weak = std::weak_ptr<WebView>{webView}] {
    if (const auto page = weak.lock()) page->evaluate(text);
  });
}

void XMRAIDEventEmitter::fireErrorEventForAction(std::string_view action,
                                                 std::string_view message) {
  const OperationLog log{"-[XMRAIDEventEmitter fireErrorEventForAction:withMessage:]"};
  executeJavascript("window.mraidbridge.fireErrorEvent('%@', '%@');",
                    {std::string{message}, std::string{action}});
}

void XMRAIDEventEmitter::executeJavascript(
    std::string_view format, const std::vector<std::string>& varArgs,
    std::function<void(const std::string& result)> completion) {
  const OperationLog log{"-[XMRAIDEventEmitter executeJavascript:withVarArgs:]"};
  const auto statement = MraidStatement::make(format, {varArgs.begin(), varArgs.end()});
  log.debug("\n\nJavascript: ", statement.text);
  const auto page = _webView.lock();
  inspect(statement, page);
  if (page && statement.isSafe) {
    page->evaluate(statement.text, std::move(completion));
  } else if (completion) {
    runLoop_->post([completion = std::move(completion)] { completion({}); });
  }
}

float XMRAIDEventEmitter::floatFromParametersForKey(std::string_view key, float withDefault) const {
  const OperationLog log{"-[XMRAIDEventEmitter floatFromParametersForKey:withDefault:]"};
  const auto found = parameters.find(key);
  return found == parameters.end() ? withDefault : leadingFloat(found->second);
}

bool XMRAIDEventEmitter::boolFromParametersForKey(std::string_view key) const {
  const OperationLog log{"-[XMRAIDEventEmitter boolFromParametersForKey:]"};
  return valueOf(parameters, key) == "true";
}

}  // namespace tavo
