#include "UserInterface/WebView/BaseViews/MraidPresentation.h"

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "Scene/Window.h"
#include "UserInterface/Pictures/Pictures.h"
#include "UserInterface/WebView/BaseViews/LayoutReport.h"
#include "UserInterface/WebView/BaseViews/PlaceReport.h"
#include "UserInterface/WebView/BaseViews/RotationScript.h"
#include "Values/Translation.h"

namespace tavo {

namespace {

constexpr double closeButtonSide = 30;
constexpr double closeButtonTop = 8;
constexpr std::string_view screenIsTaken = "Can not expand while something else covers the screen.";
constexpr Seconds reportDelay{0.0001};
constexpr Seconds moveDelay{0.2};  // a slot that is scrolled moves with every frame

// The screen as the user holds it. Older systems told it upright always, newer ones turn it.
Size screenSize(const Platform& platform) { return XDeviceScreenBounds(platform).size(); }

// Whether a part of the view lies in its window, and nothing above it is hidden.
bool isSeen(View& view) {
  const Window* const window = view.window();
  return window != nullptr && !view.isHidden() && !XViewHasHiddenAncestor(view) &&
         view.convertTo(window, view.bounds()).intersects(window->bounds());
}

}  // namespace

MraidPresentation::MraidPresentation(std::shared_ptr<Environment> environment, Host& host)
    : environment_{std::move(environment)},
      host_{host},
      emitter_{std::make_shared<XMRAIDEventEmitter>(environment_->platform().runLoop)},
      place_{environment_, host},
      placeOfSecond_{environment_, host} {}

Relay<MraidPresentation> MraidPresentation::relay() {
  return Relay<MraidPresentation>{sharedPart(host_.hold(), *this)};
}

Application& MraidPresentation::application() const {
  return *environment_->platform().application;
}

MRAIDState MraidPresentation::state() const {
  return emitter_ ? emitter_->state() : MRAIDState::loading;
}

const std::shared_ptr<XExpandedViewController>& MraidPresentation::expandedViewController() {
  if (expandedViewController_) return expandedViewController_;
  using Self = MraidPresentation;
  controllerEvents_ =
      std::make_shared<XExpandedViewControllerDelegate>(XExpandedViewControllerDelegate{
          .XExpandedViewControllerDidRotate = relay().call(&Self::didRotate),
          .XExpandedViewControllerDidCancel = relay().call(&Self::closeButtonPressed)});
  expandedViewController_ = std::make_shared<XExpandedViewController>(environment_);
  expandedViewController_->delegate.set(controllerEvents_);
  return expandedViewController_;
}

// Its size is the window's, which the user may change.
const std::shared_ptr<LayoutView>& MraidPresentation::expandView() {
  if (expandView_) return expandView_;
  expandView_ = std::make_shared<LayoutView>(XDeviceScreenBounds(environment_->platform()));
  expandView_->setAutoresizingMask(flexibleAll);
  expandView_->setBackgroundColor(colors::black);
  expandView_->onLayout = [this] { fullScreenChanged(); };
  return expandView_;
}

const std::shared_ptr<Button>& MraidPresentation::closeButton() {
  if (closeButton_) return closeButton_;
  closeButton_ = std::make_shared<Button>(Rect{0, 0, closeButtonSide, closeButtonSide});
  closeButton_->setAutoresizingMask(flexibleLeftMargin | flexibleBottomMargin);
  closeButton_->setAccessibilityLabel(translated("Close Interstitial Ad"));
  closeButton_->setAction(relay().call(&MraidPresentation::closeButtonPressed));
  return closeButton_;
}

const std::shared_ptr<View>& MraidPresentation::resizeView() {
  if (resizeView_) return resizeView_;
  resizeView_ = std::make_shared<View>();
  resizeView_->setBackgroundColor(colors::clear);
  resizeView_->setOpaque(false);
  return resizeView_;
}

const std::shared_ptr<Button>& MraidPresentation::resizeCloseControl() {
  if (resizeCloseControl_) return resizeCloseControl_;
  resizeCloseControl_ = std::make_shared<Button>(Rect{0, 0, closeControlSide, closeControlSide});
  resizeCloseControl_->setOpaque(false);
  resizeCloseControl_->setAccessibilityLabel(translated("Close Resized Ad"));
  resizeCloseControl_->setAction(relay().call(&MraidPresentation::collapseToFrame));
  return resizeCloseControl_;
}

ViewController* MraidPresentation::getRootViewController() const {
  const OperationLog log{"-[XAdView getRootViewController]"};
  if (const Window* own = host_.sceneView().window(); own != nullptr && own->rootViewController()) {
    return own->rootViewController().get();
  }
  const auto windows = application().windows();
  if (!windows.empty() && windows.front()->rootViewController()) {
    return windows.front()->rootViewController().get();
  }
  const auto key = application().keyWindow();
  return key ? key->rootViewController().get() : nullptr;
}

void MraidPresentation::handleInitMRAIDAd(const PageRef& webView,
                                          std::shared_ptr<XMRAIDEventEmitter> emitter) {
  const bool takesSecondAway = second_ && webView_.lock() != webView;
  if (takesSecondAway) dismissExpanded();
  emitter_ = std::move(emitter);
  adopt(webView);
  told_.reset();
  updateLayOutForNewState(MRAIDState::normal);
  if (!takesSecondAway) return;
  flags_.adExpanded = false;
  host_.adDidCollapse();
}

void MraidPresentation::updateLayOutForNewState(MRAIDState state) {
  const OperationLog log{"-[XAdView updateLayOutForNewState:]"};
  if (!emitter_) return;
  if (followsStandards()) return tellPlace(state);
  const auto emitter = emitter_;
  const PageRef page = webView_.lock();
  View& view = host_.sceneView();
  const bool isInterstitial = host_.placementType() == PlacementType::interstitial;
  const Rect pageFrame = page ? page->frame() : Rect{};
  const LayoutReport report =
      layoutReport({.state = state,
                    .placement = host_.placementType(),
                    .screen = screenSize(environment_->platform()),
                    .defaultFrame = host_.defaultFrame(),
                    .page = isInterstitial ? view.frame() : pageFrame,
                    .isOnScreen = view.window() != nullptr && !view.isHidden(),
                    .appBrowserOpen = host_.appBrowserOpen()});
  emitter->setScreenSize(report.screen, page);
  emitter->setMaxSize(report.screen, page);
  emitter->setDefaultPosition(report.defaultPosition, page);
  emitter->setCurrentPosition(report.currentPosition, page);
  emitter->setViewable(report.isViewable, page);
}

void MraidPresentation::moveWebView(View& container) {
  const PageRef page = webView_.lock();
  if (!page) return;
  page->setFrame(container.bounds());
  container.addSubview(page);
  place_.show(page);
  if (!followsStandards()) place_.follow(page);
}

// By the standard one statement says it all.
void MraidPresentation::tellState(MRAIDState state) {
  if (followsStandards()) return tellPlace(state);
  if (emitter_) emitter_->setState(state, webView_.lock());
}

bool MraidPresentation::expandToFrame(bool isCustomClose, const PageRef& webView) {
  const OperationLog log{"-[XAdView expandToFrame:isCustomClose:isOrientationAllowed:webView:]"};
  if (state() == MRAIDState::expanded || state() == MRAIDState::hidden) return true;
  if (isScreenTaken()) {
    if (emitter_) emitter_->reportErrorMessage(screenIsTaken, "expand", webView);
    return false;
  }
  adopt(webView);
  undoResize();
  moveWebView(*expandView());
  expandView()->setFrame(expandedViewController()->view()->bounds());
  setCustomCloseButton(isCustomClose);
  if (followsStandards()) turnExpanded(orientation_);
  presentModalView(expandView());
  stayWithoutScreen();
  host_.adDidExpand();
  if (!emitter_) return true;
  tellState(MRAIDState::expanded);
  updateLayOutForNewState(MRAIDState::expanded);
  flags_.adExpanded = true;
  return true;
}

// By another ad, a browser or the host. An ad above all content has the screen for itself.
bool MraidPresentation::isScreenTaken() const {
  if (host_.placementType() != PlacementType::inlined) return false;
  const ViewController* const root = getRootViewController();
  const ViewController* const front = root == nullptr ? nullptr : root->presentedViewController();
  return front != nullptr && front != expandedViewController_.get();
}

// A page that nobody presents stays where it can be seen; its creative believes itself expanded and
// can close again.
void MraidPresentation::stayWithoutScreen() {
  if (expandView()->window() == nullptr) moveWebView(host_.sceneView());
}

void MraidPresentation::presentModalView(const std::shared_ptr<View>& view) {
  const OperationLog log{"-[XAdView presentModalView:]"};
  const auto controller = expandedViewController();
  controller->view()->addSubview(view);
  if (controller->view()->window() != nullptr) return;
  if (state() != MRAIDState::expanded) {
    flags_.statusBarHidden = application().isStatusBarHidden();
  }
  ViewController* root = getRootViewController();
  if (root == nullptr) {
    platformLog(
        "Unable to present modal view controller becuase rootViewController is nil.  Be sure to "
        "set the keyWindow's rootViewController or provide one with "
        "XAdViewPResentionController:.");
    return;
  }
  if (!flags_.statusBarHidden) application().setStatusBarHidden(true, StatusBarAnimation::fade);
  root->presentViewController(controller, Animated::yes);
}

void MraidPresentation::dismissModalView(const std::shared_ptr<View>& view, Animated animated) {
  const OperationLog log{"-[XAdView dismissModalView:animated:]"};
  const auto controller = expandedViewController();
  if (controller->view()->window() == nullptr && !host_.isDeviceLocked()) return;
  if (view->superview() == controller->view().get()) view->removeFromSuperview();
  if (!controller->view()->subviews().empty()) return;
  if (!flags_.statusBarHidden) application().setStatusBarHidden(false, StatusBarAnimation::fade);
  // With what the ad itself has presented: it must not stay on an empty screen.
  ViewController* presenter = controller->presentingViewController();
  if (presenter != nullptr) presenter->dismissViewController(animated);
}

void MraidPresentation::setCustomCloseButton(bool isCustomClose) {
  const OperationLog log{"-[XAdView setCustomCloseButton:]"};
  const auto& button = closeButton();
  button->setBackgroundColor(colors::clear);
  button->setImage(isCustomClose ? Image{} : closePicture(environment_->platform()));
  platformLog(isCustomClose ? "SDK will not provide the close button"
                            : "SDK will provide the close button");
  button->sizeToFit();
  const Size extent =
      followsStandards() ? Size{closeControlSide, closeControlSide} : button->frame().size();
  const double edge = followsStandards() ? 0 : closeButtonTop;
  button->setImageMargin(followsStandards() ? (closeControlSide - closeButtonSide) / 2 : 0);
  button->setFrame({expandView()->frame().width - extent.width, edge, extent.width, extent.height});
  expandView()->addSubview(button);
  expandView()->bringSubviewToFront(*button);
}

void MraidPresentation::setCloseButtonImageWithImageNamed(std::string_view name) {
  const OperationLog log{"-[XAdView setCloseButtonImageWithImageNamed:]"};
  const auto dot = name.rfind('.');
  const auto& platform = environment_->platform();
  closeButton()->setImage(dot == std::string_view::npos
                              ? bundlePicture(name, "png", platform)
                              : bundlePicture(name.substr(0, dot), name.substr(dot + 1), platform));
  closeButton()->sizeToFit();
}

void MraidPresentation::closeButtonPressed() {
  const OperationLog log{"-[XAdView closeButtonPressed]"};
  endSecondPart();
  dismissModalView(expandView(), Animated::no);
  moveWebView(host_.sceneView());
  tellState(MRAIDState::normal);
  updateLayOutForNewState(MRAIDState::normal);
  if (closeButton_) closeButton_->removeFromSuperview();
  closeButton_.reset();
  host_.sceneView().setHidden(false);
  flags_.adExpanded = false;
  host_.adDidCollapse();
}

void MraidPresentation::collapseToFrame() {
  const OperationLog log{"-[XAdView collapseToFrame:]"};
  if (host_.placementType() == PlacementType::interstitial) {
    if (followsStandards()) tellPlace(MRAIDState::hidden);
    return host_.interstitialAdDidClose();
  }
  if (host_.placementType() != PlacementType::inlined) return;
  if (state() == MRAIDState::loading || state() == MRAIDState::hidden) return;
  if (followsStandards() && state() == MRAIDState::normal) return hideAd();
  endSecondPart();
  if (state() == MRAIDState::expanded) {
    moveWebView(host_.sceneView());
    dismissModalView(expandView(), Animated::no);
    host_.adDidCollapse();
    expandedViewController_.reset();
  } else if (state() == MRAIDState::resized) {
    undoResize();
    moveWebView(host_.sceneView());
  }
  flags_.adExpanded = false;
  updateLayOutForNewState(MRAIDState::normal);
  tellState(MRAIDState::normal);
}

void MraidPresentation::undoResize() {
  if (resizeView_) resizeView_->removeFromSuperview();
  resizeProperties_.reset();
}

void MraidPresentation::resizeAd(const std::optional<XMRAIDResizeProperties>& properties,
                                 const PageRef& webView) {
  const OperationLog log{"-[XAdView resizeAd:]"};
  const auto asked = properties.value_or(XMRAIDResizeProperties{});
  const auto outcome = planResize(asked, resizeFacts());
  if (const auto* refusal = std::get_if<ResizeRefusal>(&outcome)) {
    if (emitter_) emitter_->reportErrorMessage(refusal->message, refusal->action, webView);
    return;
  }
  adopt(webView);
  resizeProperties_ = asked;
  carryOut(std::get<ResizePlan>(outcome));
}

ResizeFacts MraidPresentation::resizeFacts() const {
  View& view = host_.sceneView();
  ResizeFacts facts{.byStandard = followsStandards(),
                    .superview = std::nullopt,
                    .placement = host_.placementType(),
                    .state = state(),
                    .isSeen = isSeen(view),
                    .ad = {}};
  ViewController* const controller = view.nearestController();
  if (controller == nullptr) return facts;
  const View& superview = *controller->view();
  facts.superview =
      resizeViewMaxRect(superview.bounds(), screenSize(environment_->platform()),
                        application().statusBarFrame(), application().statusBarOrientation());
  facts.ad = view.convertTo(&superview, view.bounds());
  return facts;
}

// What the creative had asked for, where the ad and the room are now. An ad that nobody could leave
// there any more returns to its place.
void MraidPresentation::resizeAnew() {
  const auto outcome =
      planResize(resizeProperties_.value_or(XMRAIDResizeProperties{}), resizeFacts());
  if (std::holds_alternative<ResizeRefusal>(outcome)) return collapseToFrame();
  const auto& plan = std::get<ResizePlan>(outcome);
  if (plan.container != resizeView()->frame()) return carryOut(plan);
  updateLayOutForNewState(MRAIDState::resized);
}

void MraidPresentation::carryOut(const ResizePlan& plan) {
  resizeView()->setFrame(plan.container);
  moveWebView(*resizeView());
  host_.sceneView().nearestController()->view()->addSubview(resizeView());
  updateLayOutForNewState(MRAIDState::resized);
  tellState(MRAIDState::resized);
  resizeCloseControl()->setFrame(plan.closeControl);
  resizeView()->addSubview(resizeCloseControl());
}

void MraidPresentation::setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                                     const PageRef& webView) {
  const OperationLog log{"-[XAdView setOrientationPropertiesWith:webView:]"};
  adopt(webView);
  if (followsStandards()) {
    orientation_ = properties;
    if (host_.placementType() == PlacementType::inlined) turnExpanded(properties);
    host_.orientationPropertiesDidChange(effectiveOrientation(properties));
    return updateLayOutForNewState(state());
  }
  const auto controller = expandedViewController();
  controller->allowRotation = properties.allowOrientationChange;
  if (properties.forceOrientation == ForceOrientation::none)
    controller->orientationRulesDidChange();
  if (host_.placementType() == PlacementType::inlined) {
    if (properties.forceOrientation == ForceOrientation::landscape) {
      controller->forceRotateToInterfaceOrientation(InterfaceOrientation::landscapeLeft);
    } else if (properties.forceOrientation == ForceOrientation::portrait) {
      controller->forceRotateToInterfaceOrientation(InterfaceOrientation::portrait);
    }
  }
  host_.orientationPropertiesDidChange(properties);
  updateLayOutForNewState(state());
}

void MraidPresentation::didRotate() {
  const OperationLog log{"-[XAdView XExpandedViewControllerDidRotate:]"};
  updateLayOutForNewState(state());
  tellRotation(webView_.lock(), application().statusBarOrientation(),
               *environment_->platform().device);
}

void MraidPresentation::orientationDidChange() {
  const OperationLog log{"-[XAdView orientatioDidChange:]"};
  scheduleReport();
}

void MraidPresentation::placeDidChange() {
  if (state() != MRAIDState::loading) scheduleReport();
}

void MraidPresentation::viewDidMove() {
  if (state() == MRAIDState::loading) return;
  if (state() == MRAIDState::resized) return scheduleReport();
  move_ = environment_->platform().runLoop->after(
      moveDelay, relay().call(&MraidPresentation::manipulateScreenSize));
}

void MraidPresentation::viewDidDisappear() {
  if (state() == MRAIDState::resized) collapseToFrame();
}

void MraidPresentation::fullScreenChanged() {
  if (flags_.adExpanded && state() == MRAIDState::expanded) scheduleReport();
}

void MraidPresentation::scheduleReport() {
  report_ = environment_->platform().runLoop->after(
      reportDelay, relay().call(&MraidPresentation::manipulateScreenSize));
}

void MraidPresentation::manipulateScreenSize() {
  const OperationLog log{"-[XAdView manipulateScreenSize]"};
  if (state() == MRAIDState::resized) return resizeAnew();
  updateLayOutForNewState(state());
}

// The creative is not told: it is gone, or about to be told its first state. The state is reset for
// the next ad to be loaded.
void MraidPresentation::webViewLeavesScreen(const PageRef& webView) {
  if (webView_.lock() != webView) return;
  const bool wasExpanded = flags_.adExpanded;
  place_.show(webView);
  told_.reset();
  dismissExpanded();
  undoResize();
  flags_.adExpanded = false;
  if (emitter_) emitter_->setState(MRAIDState::normal, nullptr);
  if (webView) webView->setFrame(host_.sceneView().bounds());
  if (wasExpanded) host_.adDidCollapse();
}

// By what is on the screen and not by the state, which follows a little later: the host may release
// the view while it hears that the ad has expanded.
void MraidPresentation::dismissExpanded() {
  endSecondPart();
  if (!expandedViewController_) return;
  const auto controller = std::exchange(expandedViewController_, nullptr);
  ViewController* presenter = controller->presentingViewController();
  if (presenter == nullptr) return;
  if (!flags_.statusBarHidden) application().setStatusBarHidden(false, StatusBarAnimation::fade);
  if (controller->presentedViewController() != nullptr) {
    controller->dismissViewController(Animated::no);
  }
  presenter->dismissViewController(Animated::no);
}

void MraidPresentation::release() {
  report_.invalidate();
  move_.invalidate();
  undoResize();
  endSecondPart();
  orientation_ = {};
  emitter_.reset();
  if (closeButton_) closeButton_->setAction({});
  if (resizeCloseControl_) resizeCloseControl_->setAction({});
  if (expandView_) expandView_->onLayout = {};
  resizeCloseControl_.reset();
  resizeView_.reset();
  expandedViewController_.reset();
  expandView_.reset();
  webView_.reset();
  closeButton_.reset();
  flags_.adExpanded = false;
}

}  // namespace tavo
