#include "AdController/AdGenerator/CreativeCommands.h"

#include <algorithm>
#include <array>

#include "AdController/AdGenerator/ExpandGeometry.h"
#include "AdController/AdGenerator/NavigationPolicy.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

namespace {

// What a creative can be answered with when it asks for too much is nothing: it would ask again.
void noteRefusal(const std::string& what) {
  const OperationLog log{"-[XWebViewAgent webView:shouldStartLoadWithRequest:navigationType:]"};
  log.debug("\n\nToo many commands in a short time, dropped: ", what);
}

LeavingGuard::Rules leavingRules(const Limits& limits) {
  return {.perSecond = limits.leavingActionsPerSecond,
          .needsTap = limits.leavingActionsNeedTap,
          .tapLifetime = limits.tapLifetime};
}

bool isUserInteraction(std::string_view name) {
  return name == "createCalendarEvent" || name == "storePicture";
}

Url openedUrl(const MraidCommand& command) {
  return Url::fromText(urlWithEscapedSmsBody(std::string{valueOf(command.parameters, "url")}));
}

}  // namespace

CreativeCommands::CreativeCommands(Means means, const Limits& limits)
    : means_{std::move(means)},
      budget_{limits.commandsPerSecond, limits.commandBurst},
      leavingGuard_{leavingRules(limits)} {}

void CreativeCommands::setAdView(std::weak_ptr<WebViewAgentHost> adView) {
  adView_ = std::move(adView);
  const auto view = adView_.lock();
  if (!view) return;
  pictureManager_ = view->makePictureManager([this](const Error& error) {
    means_.eventEmitter->reportErrorMessage(error.description, "storePicture", means_.webView);
  });
}

bool CreativeCommands::noteIfRefused(bool may, const std::string& action) const {
  if (may) return true;
  noteRefusal(action);
  if (means_.inspection.isOn()) {
    means_.inspection.tell(InspectionKind::command, action,
                           {{"outcome", "refused: too many in a short time, or no tap before it"}});
  }
  return false;
}

void CreativeCommands::inspect(const MraidCommand& command, std::string outcome) const {
  if (!means_.inspection.isOn()) return;
  std::vector<InspectionField> fields{{"name", command.name}, {"outcome", std::move(outcome)}};
  std::string text = command.name;
  for (const auto& [key, value] : command.parameters) {
    fields.push_back({"? " + key, value});
    text.append(" ").append(key).append("=").append(value);
  }
  means_.inspection.tell(InspectionKind::command, std::move(text), std::move(fields));
}

// By the standard a creative hears of an action that does not happen.
bool CreativeCommands::mayLeave(bool may, const std::string& action) const {
  if (!may && means_.eventEmitter->followsStandards()) {
    means_.eventEmitter->reportErrorMessage("Too many actions without a touch.", action,
                                            means_.webView);
  }
  return noteIfRefused(may, action);
}

bool CreativeCommands::mayRun(const std::string& command) {
  return noteIfRefused(budget_.take(means_.runLoop->now()), command);
}

bool CreativeCommands::mayOpen(const Url& url) {
  if (routeClick(url) == ClickRoute::customUrl) return true;
  return mayLeave(leavingGuard_.take(means_.runLoop->now()), "open");
}

void CreativeCommands::handle(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent handleCommandWithURL:]"};
  struct Entry {
    std::string_view name;
    void (CreativeCommands::*run)(const MraidCommand&);
  };
  using Self = CreativeCommands;
  static constexpr std::array<Entry, 11> commands{
      {{"expand", &Self::expandToFrameWithUrl},
       {"init", &Self::handleInit},
       {"close", &Self::closeAdWithUrl},
       {"setExpandProperties", &Self::setExpandProperties},
       {"setResizeProperties", &Self::setResizeProperties},
       {"resize", &Self::resizeAdWithUrl},
       {"open", &Self::openPage},
       {"tel:", &Self::dialFixedNumber},
       {"updateCurrentPosition", &Self::updateCurrentPosition},
       {"setOrientationProperties", &Self::setOrientationPropertiesWith},
       {"playVideo", &Self::handlePlayVideoWithURL}}};
  const auto adView = adView_.lock();  // lives on until the command is carried out
  if (!mayCarryOut(command)) return;
  const bool isKnown = isUserInteraction(command.name) ||
                       std::any_of(commands.begin(), commands.end(),
                                   [&](const Entry& entry) { return entry.name == command.name; });
  inspect(command, isKnown ? "carried out" : "unknown: answered with an error event");
  if (handleUserInteractionCommand(command.name, command.parameters)) return;
  for (const auto& [name, run] : commands) {
    if (name == command.name) return (this->*run)(command);
  }
  log.debug("\n\nError occured while processing command: ", command.name);
  means_.eventEmitter->reportErrorMessage("The command requested is unknown", command.name,
                                          means_.webView);
}

bool CreativeCommands::handleUserInteractionCommand(const std::string& name,
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

// What takes a person out of the application needs a tap or a pause. An expansion covers it only
// where the ad stands among its content, and the person is still in the ad then.
bool CreativeCommands::mayCarryOut(const MraidCommand& command) {
  constexpr std::array<std::string_view, 3> leaving{"storePicture", "createCalendarEvent",
                                                    "playVideo"};
  const Seconds now = means_.runLoop->now();
  if (command.name == "open") return mayOpen(openedUrl(command));
  if (command.name == "expand") {
    const auto adView = adView_.lock();
    const bool covers = adView && adView->placementType() == PlacementType::inlined;
    return !covers || mayLeave(leavingGuard_.takeAndStay(now), command.name);
  }
  if (std::find(leaving.begin(), leaving.end(), command.name) == leaving.end()) return true;
  return mayLeave(leavingGuard_.take(now), command.name);
}

// Quirk: the creative is told of the new state also where it was ignored, but not where it was
// refused.
void CreativeCommands::expandToFrameWithUrl(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent expandToFrameWithUrl:]"};
  const auto adView = adView_.lock();
  if (!adView) return;
  defaultFrame = adView->sceneView().frame();
  const Rect frame =
      expandedFrame(XApplicationFrame(livingEnvironment()->platform()), expandParametersDict);
  const bool isCustomClose = expandParametersDict && expandParametersDict->useCustomClose;
  const bool byStandard = means_.eventEmitter->followsStandards();
  const auto address = valueOf(command.parameters, "url");
  if (byStandard && !address.empty()) {
    return adView->expandToPage(Url::fromText(address), isCustomClose, means_.webView);
  }
  const bool isOrientationAllowed =
      orientationParametersDict && orientationParametersDict->allowOrientationChange;
  const bool expands =
      adView->expandToFrame(frame, isCustomClose, isOrientationAllowed, means_.webView);
  if (!expands || byStandard) return;
  means_.eventEmitter->setState(MRAIDState::expanded, means_.webView);
}

void CreativeCommands::handleInit(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent handleInit]"};
  if (const auto adView = adView_.lock()) {
    adView->handleInitMRAIDAdWithWebView(means_.webView, means_.eventEmitter);
  }
}

// Quirk: a second report of the default state follows the view's own, and one comes even when there
// was nothing to close.
void CreativeCommands::closeAdWithUrl(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent closeAdWithUrl:]"};
  const auto adView = adView_.lock();
  if (!adView) return;
  adView->collapseToFrame(defaultFrame);
  if (means_.eventEmitter->followsStandards()) return;  // the view has told it all
  means_.eventEmitter->setState(MRAIDState::normal, means_.webView);
}

void CreativeCommands::setExpandProperties(const MraidCommand& command) {
  expandParametersDict = XMRAIDExpandProperties::propertiesFromArgs(command.parameters);
  if (const auto adView = adView_.lock()) {
    adView->setExpandPropertiesWithDict(*expandParametersDict);
  }
}

void CreativeCommands::setResizeProperties(const MraidCommand& command) {
  resizeParametersDict = XMRAIDResizeProperties::propertiesFromArgs(command.parameters);
}

void CreativeCommands::resizeAdWithUrl(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent resizeAdWithUrl:]"};
  if (const auto adView = adView_.lock()) adView->resizeAd(resizeParametersDict, means_.webView);
}

void CreativeCommands::openPage(const MraidCommand& command) { means_.openUrl(openedUrl(command)); }

// Quirk: no URL's host can read "tel:", so nothing ever comes here.
void CreativeCommands::dialFixedNumber(const MraidCommand& /*command*/) {
  means_.application->openUrl(Url::parse("tel:12125551212"));
}

void CreativeCommands::updateCurrentPosition(const MraidCommand& /*command*/) {
  const OperationLog log{"-[XWebViewAgent updateCurrentPosition]"};
  if (const auto adView = adView_.lock()) adView->updateCurrentPositionOfWebView(means_.webView);
}

void CreativeCommands::setOrientationPropertiesWith(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent setOrientationPropertiesWith:]"};
  orientationParametersDict = XMRAIDOrientationProperties::propertiesFromArgs(command.parameters);
  if (const auto adView = adView_.lock()) {
    adView->setOrientationPropertiesWith(*orientationParametersDict, means_.webView);
  }
}

void CreativeCommands::handlePlayVideoWithURL(const MraidCommand& command) {
  const OperationLog log{"-[XWebViewAgent handlePlayVideoWithURL:]"};
  const auto adView = adView_.lock();
  if (!adView) return;
  const Url video = Url::fromText(valueOf(command.parameters, "url"));
  if (!video.empty()) return adView->handlePlayVideoWithURL(video);
  means_.eventEmitter->reportErrorMessage("playVideo needs a URL.", "playVideo", means_.webView);
}

void CreativeCommands::createCalenderEvent(const std::string& event) {
  const OperationLog log{"-[XWebViewAgent createCalenderEvent:]"};
  if (const auto adView = adView_.lock()) adView->createCalenderEvent(event);
}

void CreativeCommands::storePicture(const MraidParameters& parameters) {
  if (pictureManager_) pictureManager_->storePicture(parameters);
}

}  // namespace tavo
