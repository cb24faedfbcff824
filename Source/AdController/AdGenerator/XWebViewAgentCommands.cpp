// What a web view agent does for the commands of its creative.

#include <array>

#include <tavo/Runtime.h>

#include "AdController/AdGenerator/ExpandGeometry.h"
#include "AdController/AdGenerator/XWebViewAgent.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "RequestEnrichment/XDeviceSupportProperties.h"

namespace tavo {

void XWebViewAgent::handleCommandWithURL(const Url& url) {
  const OperationLog log{"-[XWebViewAgent handleCommandWithURL:]"};
  struct Entry {
    std::string_view name;
    void (XWebViewAgent::*run)(const MraidCommand&);
  };
  static constexpr std::array<Entry, 11> commands{
      {{"expand", &XWebViewAgent::expandToFrameWithUrl},
       {"init", &XWebViewAgent::handleInit},
       {"close", &XWebViewAgent::closeAdWithUrl},
       {"setExpandProperties", &XWebViewAgent::setExpandProperties},
       {"setResizeProperties", &XWebViewAgent::setResizeProperties},
       {"resize", &XWebViewAgent::resizeAdWithUrl},
       {"open", &XWebViewAgent::openPage},
       {"tel:", &XWebViewAgent::dialFixedNumber},
       {"updateCurrentPosition", &XWebViewAgent::updateCurrentPosition},
       {"setOrientationProperties", &XWebViewAgent::setOrientationPropertiesWith},
       {"playVideo", &XWebViewAgent::handlePlayVideoWithURL}}};
  const auto self = shared_from_this();
  const auto adView = xadViewInstance_.lock();
  const MraidCommand command = mraidCommandFromUrl(url);
  if (leavesApplication(command.name) && !mayLeaveApplication(command.name)) return;
  if (handleUserInteractionCommand(command.name, command.parameters)) return;
  for (const auto& [name, run] : commands) {
    if (name == command.name) return (this->*run)(command);
  }
  log.debug("\n\nError occured while processing command: ", command.name);
  eventEmitter_->reportErrorMessage("The command requested is unknown", command.name, webView_);
}

bool XWebViewAgent::handleUserInteractionCommand(const std::string& name,
                                                 const MraidParameters& parameters) {
  const OperationLog log{"-[XWebViewAgent handleUserInteractionCommand:parameters:]"};
  if (name == "createCalendarEvent") {
    createCalenderEvent(std::string{valueOf(parameters, "event")});
    return true;
  }
  if (name == "storePicture") {
    storePicture(parameters);
    return true;
  }
  return false;
}

// An expansion covers the application only where the ad stands among its content.
bool XWebViewAgent::leavesApplication(const std::string& command) const {
  constexpr std::array<std::string_view, 4> leaving{"open", "storePicture", "createCalendarEvent",
                                                    "playVideo"};
  for (const auto& name : leaving) {
    if (name == command) return true;
  }
  const auto adView = xadViewInstance_.lock();
  return command == "expand" && adView && adView->placementType() == PlacementType::inlined;
}

// Quirk: the creative is told of the new state whether or not the view has followed.
void XWebViewAgent::expandToFrameWithUrl(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent expandToFrameWithUrl:]"};
  const auto adView = xadViewInstance_.lock();
  if (!adView) return;
  defaultFrame = adView->sceneView().frame();
  const Rect frame = expandedFrame(XApplicationFrame(), expandParametersDict);
  const bool isCustomClose = expandParametersDict && expandParametersDict->useCustomClose;
  const bool isOrientationAllowed =
      orientationParametersDict && orientationParametersDict->allowOrientationChange;
  adView->expandToFrame(frame, isCustomClose, isOrientationAllowed, webView_);
  eventEmitter_->setState(MRAIDState::expanded, webView_);
}

void XWebViewAgent::handleInit(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent handleInit]"};
  if (const auto adView = xadViewInstance_.lock()) {
    adView->handleInitMRAIDAdWithWebView(webView_, eventEmitter_);
  }
}

// Quirk: a second report of the default state follows the view's own, and one comes even when there
// was nothing to close.
void XWebViewAgent::closeAdWithUrl(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent closeAdWithUrl:]"};
  const auto adView = xadViewInstance_.lock();
  if (!adView) return;
  adView->collapseToFrame(defaultFrame);
  eventEmitter_->setState(MRAIDState::normal, webView_);
}

void XWebViewAgent::setExpandProperties(const MraidCommand& command) {
  expandParametersDict = XMRAIDExpandProperties::propertiesFromArgs(command.parameters);
  if (const auto adView = xadViewInstance_.lock()) {
    adView->setExpandPropertiesWithDict(*expandParametersDict);
  }
}

void XWebViewAgent::setResizeProperties(const MraidCommand& command) {
  resizeParametersDict = XMRAIDResizeProperties::propertiesFromArgs(command.parameters);
}

void XWebViewAgent::resizeAdWithUrl(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent resizeAdWithUrl:]"};
  if (const auto adView = xadViewInstance_.lock()) {
    adView->resizeAd(resizeParametersDict, webView_);
  }
}

void XWebViewAgent::openPage(const MraidCommand& command) {
  openUrl(Url::fromText(urlWithEscapedSmsBody(std::string{valueOf(command.parameters, "url")})));
}

// Quirk: no URL's host can read "tel:", so nothing ever comes here.
void XWebViewAgent::dialFixedNumber(const MraidCommand& /*command*/) {
  Runtime::current().platform().application->openUrl(Url::parse("tel:12125551212"));
}

void XWebViewAgent::updateCurrentPosition(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent updateCurrentPosition]"};
  if (const auto adView = xadViewInstance_.lock()) {
    adView->updateCurrentPositionOfWebView(webView_);
  }
}

void XWebViewAgent::setOrientationPropertiesWith(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent setOrientationPropertiesWith:]"};
  orientationParametersDict = XMRAIDOrientationProperties::propertiesFromArgs(command.parameters);
  if (const auto adView = xadViewInstance_.lock()) {
    adView->setOrientationPropertiesWith(*orientationParametersDict, webView_);
  }
}

void XWebViewAgent::handlePlayVideoWithURL(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent handlePlayVideoWithURL:]"};
  if (const auto adView = xadViewInstance_.lock()) {
    adView->handlePlayVideoWithURL(Url::fromText(valueOf(command.parameters, "url")));
  }
}

void XWebViewAgent::createCalenderEvent(const std::string& event) {
  const OperationLog log{"-[XWebViewAgent createCalenderEvent:]"};
  if (const auto adView = xadViewInstance_.lock()) adView->createCalenderEvent(event);
}

void XWebViewAgent::storePicture(const MraidParameters& parameters) {
  pictureManager_->storePicture(parameters);
}

void XWebViewAgent::mraidSupportsFeatures(const std::shared_ptr<WebView>& webView) {
  const OperationLog log{"-[XWebViewAgent mraidSupportsFeatures:]"};
  const auto has = XDeviceSupportProperties::defaultProperty();
  eventEmitter_->setSupported(has.deviceSupportsSms, MRAIDFeature::sms, webView);
  eventEmitter_->setSupported(has.deviceSupportsCalendar, MRAIDFeature::calendar, webView);
  eventEmitter_->setSupported(has.deviceSupportsInlineVideo, MRAIDFeature::inlineVideo, webView);
  eventEmitter_->setSupported(has.deviceSupportsTel, MRAIDFeature::tel, webView);
  eventEmitter_->setSupported(has.deviceSupportsStorePicture, MRAIDFeature::storePicture, webView);
}

// What is missing here, largest size and default position, the ad view tells when it answers
// "init". The records are the page's first answers, not what the creative has asked for.
void XWebViewAgent::initializeJavaScriptBridge(XMRAIDEventEmitter& emitter,
                                               const std::shared_ptr<WebView>& webView) {
  const OperationLog log{"-[XWebViewAgent initializeJavaScriptBridge:forWebView:]"};
  const Size screen = screenSizeIncludingStatusBar(false);
  const auto adView = xadViewInstance_.lock();
  mraidSupportsFeatures(webView);
  emitter.setExpandProperties(XMRAIDExpandProperties{screen}, webView);
  emitter.setResizeProperties({}, webView);
  emitter.setOrientationProperties({}, webView);
  emitter.setPlacementType(adView ? adView->placementType() : PlacementType::inlined, webView);
  emitter.setState(MRAIDState::normal, webView);
  emitter.setCurrentPosition(adView ? adView->sceneView().frame() : Rect{}, webView);
  emitter.setViewable(true, webView);
  emitter.setScreenSize(screen, webView);
  emitter.fireEventForEvent(sizeChangeEventName(screen), webView);
  emitter.fireReadyEventForWebView(webView);
}

// Quirk: where the orientation is not known the frames are told upright and the size comes out
// sideways.
Size XWebViewAgent::screenSizeIncludingStatusBar(bool includingStatusBar) {
  const OperationLog log{"-[XWebViewAgent screenSizeIncludingStatusBar:]"};
  const Size size = includingStatusBar ? XDeviceScreenBounds().size() : XApplicationFrame().size();
  const bool isKnown = XDeviceInterfaceOrientation() != InterfaceOrientation::unknown;
  return isKnown ? size : Size{size.height, size.width};
}

}  // namespace tavo
