#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>

#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/NotificationCenter.h"
#include "UserInterface/Pictures/Pictures.h"
#include "UserInterface/WebView/BaseViews/RotationScript.h"

namespace tavo {

std::shared_ptr<XAdInterstitialViewController> XAdInterstitialViewController::create() {
  std::shared_ptr<XAdInterstitialViewController> controller{new XAdInterstitialViewController};
  controller->makeObservers();
  return controller;
}

XAdInterstitialViewController::~XAdInterstitialViewController() {
  if (screen_) screen_->onLayout = {};
  XAdInterstitialViewController::releaseMemory();
}

std::string XAdInterstitialViewController::corvaneTAVOSDKVersion() {
  const OperationLog log{"+[XAdInterstitialViewController corvaneTAVOSDKVersion]"};
  return XAdView::corvaneTAVOSDKVersion();
}

// Black, so that nothing of the host's content shines through and no touch reaches it. The ad
// follows every size of the screen exactly, whatever size it had before.
std::shared_ptr<View> XAdInterstitialViewController::loadView() {
  screen_ = std::make_shared<LayoutView>(XDeviceScreenBounds());
  screen_->setBackgroundColor(colors::black);
  screen_->onLayout = [this] { fitAdView(); };
  return screen_;
}

void XAdInterstitialViewController::viewDidLoad() {
  const OperationLog log{"-[XAdInterstitialViewController viewDidLoad]"};
  if (isBeingDismissed()) return;
  useCustomClose = false;
  view()->setAutoresizingMask(flexibleAll);
  makeAdView();
  orientationWhileLeaving = XDeviceInterfaceOrientation();
  orientationProp_ = XMRAIDOrientationProperties{};
  isFirstMRAIDAd = true;
  memoryWarning_ = Runtime::current().notifications().subscribe(
      notifications::didReceiveMemoryWarning, [self = holder()](const Notification&) {
        if (const auto controller = self()) controller->didReceiveMemoryWarning();
      });
}

void XAdInterstitialViewController::makeAdView() {
  xadView_ = XAdView::create(XDeviceScreenBounds());
  xadView_->delegate.set(adViewEvents_);
  xadView_->pDelegate.set(subClassEvents_);
  xadView_->setPlacementType(PlacementType::interstitial);
  xadView_->setMobileAdTypes(MobileAdTypes::interstitial);
  xadView_->setAutoresizingMask(flexibleAll);
  view()->addSubview(xadView_);
}

void XAdInterstitialViewController::loadWithDomainName(const std::string& domainName,
                                                       const std::string& pageName,
                                                       const std::string& adPosition,
                                                       const std::string& keywords,
                                                       const std::string& queryString) {
  const OperationLog log{
      "-[XAdInterstitialViewController "
      "loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  const auto held = shared_from_this();
  const auto& screen = view();
  forgetLastAd();
  if (!xadView_) makeAdView();
  screen->addSubview(xadView_);
  if (activityindicator_) screen->bringSubviewToFront(*activityindicator_);
  if (slotConfiguration) xadView_->setSlotConfiguration(slotConfiguration);
  const auto adView = xadView_;
  adView->loadWithDomainName(domainName, pageName, adPosition, keywords, queryString);
}

// What the last ad asked for, and how it ended, is not the next one's affair.
void XAdInterstitialViewController::forgetLastAd() {
  dismissal_.invalidate();
  over_ = false;
  adLoaded_ = false;
  useCustomClose = false;
  orientationProp_ = XMRAIDOrientationProperties{};
  if (closeButton_) closeButton_->removeFromSuperview();
  closeButton_.reset();
}

void XAdInterstitialViewController::performClickToAction(
    ClickToAction actionType, const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdInterstitialViewController performClickToAction:parameters:]"};
  if (const auto adView = xadView_) adView->performClickToAction(actionType, parameters);
}

MobileAdSubTypes XAdInterstitialViewController::mobileAdSubTypes() const {
  return xadView_ ? xadView_->mobileAdSubTypes() : MobileAdSubTypes::unknown;
}

bool XAdInterstitialViewController::isRequiredDelegateImplementedByPublisher() const {
  const OperationLog log{
      "-[XAdInterstitialViewController isRequiredDelegateImplementedByPublisher]"};
  return delegate.implements(&Told::xAdInterstitialDidLoad);
}

void XAdInterstitialViewController::fitAdView() const {
  if (xadView_ && xadView_->superview() != nullptr) {
    xadView_->setFrame(xadView_->superview()->bounds());
  }
}

void XAdInterstitialViewController::postOrientation() const {
  Runtime::current().notifications().post(
      {.name = "XAdInterstitialOrientationDidChange",
       .object = this,
       .userInfo = {{"UIInterfaceOrientation", static_cast<int>(XDeviceInterfaceOrientation())}}});
}

void XAdInterstitialViewController::viewWillAppear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewWillAppear:]"};
  over_ = false;
  if (isLandscape(XDeviceInterfaceOrientation())) postOrientation();
}

// The creative hears at last that it can be seen, and where.
void XAdInterstitialViewController::viewDidAppear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewDidAppear:]"};
  if (isBeingDismissed()) return;
  fitAdView();
  if (orientationWhileLeaving != XDeviceInterfaceOrientation()) {
    Runtime::current().notifications().post(
        {.name = std::string{notifications::deviceOrientationDidChange},
         .object = this,
         .userInfo = {}});
  }
  if (!adLoaded_) showIndicator();
  if (xadView_) xadView_->updateCurrentPositionOfWebView({});
}

void XAdInterstitialViewController::viewDidDisappear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewDidDisappear:]"};
  orientationWhileLeaving = XDeviceInterfaceOrientation();
}

void XAdInterstitialViewController::showIndicator() {
  if (!activityindicator_) {
    activityindicator_ = ActivityIndicator::create(view());
    activityindicator_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  }
  activityindicator_->show();
  view()->bringSubviewToFront(*activityindicator_);
}

CloseButtonFacts XAdInterstitialViewController::closeButtonFacts() const {
  return {.exists = closeButton_ != nullptr,
          .useCustomClose = useCustomClose,
          .subType = mobileAdSubTypes()};
}

void XAdInterstitialViewController::putCloseButton(ButtonLook look) {
  if (closeButton_) closeButton_->removeFromSuperview();
  closeButton_ = std::make_shared<Button>(interstitialCloseButtonFrame(view()->frame().width));
  closeButton_->setAutoresizingMask(flexibleLeftMargin | flexibleBottomMargin);
  closeButton_->setAccessibilityLabel("Close Interstitial Ad");
  closeButton_->setAction([self = holder()] {
    if (const auto controller = self()) controller->closeInterstitialAd();
  });
  if (look == ButtonLook::picture) {
    closeButton_->setImage(closePicture(Runtime::current().platform()));
    // Nobody is held in front of an ad because a picture is missing.
    if (closeButton_->image().empty()) closeButton_->setTitle("\u2715");
  }
  view()->addSubview(closeButton_);
}

void XAdInterstitialViewController::addCloseButton() {
  const OperationLog log{"-[XAdInterstitialViewController addCloseButton]"};
  if (!mayAddCloseButton(closeButtonFacts())) return;
  putCloseButton(ButtonLook::picture);
  view()->bringSubviewToFront(*closeButton_);
}

void XAdInterstitialViewController::addCloseButtonWithoutImage() {
  const OperationLog log{"-[XAdInterstitialViewController addCloseButtonWithoutImage]"};
  if (mayAddCloseButtonWithoutImage(closeButtonFacts())) putCloseButton(ButtonLook::invisible);
}

void XAdInterstitialViewController::addCloseButtonForRedirect() {
  const OperationLog log{"-[XAdInterstitialViewController addCloseButtonForRedirect]"};
  if (mayAddCloseButtonForRedirect(closeButtonFacts())) putCloseButton(ButtonLook::picture);
}

void XAdInterstitialViewController::expandPropertiesChnaged(
    const XMRAIDExpandProperties& properties) {
  const OperationLog log{"-[XAdInterstitialViewController expandPropertiesChnaged:]"};
  useCustomClose = properties.useCustomClose;
  switch (changeForExpandProperties(closeButtonFacts())) {
    case CloseButtonChange::hide:
      closeButton_->removeFromSuperview();
      closeButton_.reset();
      return addCloseButtonWithoutImage();
    case CloseButtonChange::add:
      return addCloseButton();
    case CloseButtonChange::none:
      return;
  }
}

void XAdInterstitialViewController::setOrientationPropertiesWith(
    const XMRAIDOrientationProperties& properties) {
  const OperationLog log{"-[XAdInterstitialViewController setOrientationPropertiesWith:]"};
  orientationProp_ = properties;
}

bool XAdInterstitialViewController::shouldAutorotate() const {
  const OperationLog log{"-[XAdInterstitialViewController shouldAutorotate]"};
  if (mobileAdSubTypes() != MobileAdSubTypes::vastInterstitial) {
    return mayAutorotate(orientationProp_);
  }
  fitAdView();
  postOrientation();
  return true;
}

bool XAdInterstitialViewController::shouldAutorotateToInterfaceOrientation(
    InterfaceOrientation orientation) const {
  const OperationLog log{
      "-[XAdInterstitialViewController shouldAutorotateToInterfaceOrientation:]"};
  if (mobileAdSubTypes() != MobileAdSubTypes::vastInterstitial) {
    return mayAutorotateTo(orientation, orientationProp_);
  }
  fitAdView();
  postOrientation();
  return true;
}

OrientationMask XAdInterstitialViewController::supportedInterfaceOrientations() const {
  const OperationLog log{"-[XAdInterstitialViewController supportedInterfaceOrientations]"};
  return supportedOrientations(orientationProp_);
}

InterfaceOrientation XAdInterstitialViewController::preferredInterfaceOrientationForPresentation()
    const {
  const OperationLog log{
      "-[XAdInterstitialViewController preferredInterfaceOrientationForPresentation]"};
  return preferredOrientation(orientationProp_, XDeviceInterfaceOrientation());
}

void XAdInterstitialViewController::didRotateFromInterfaceOrientation(
    InterfaceOrientation /*from*/) {
  const OperationLog log{"-[XAdInterstitialViewController didRotateFromInterfaceOrientation:]"};
  if (!xadView_) return;
  reportLayout();
  tellRotation(xadView_->webViewInstance(), XDeviceInterfaceOrientation());
}

void XAdInterstitialViewController::reportLayout() const {
  const auto emitter = xadView_ ? xadView_->eventEmitter() : nullptr;
  if (emitter) xadView_->updateLayOutForNewState(emitter->state());
}

void XAdInterstitialViewController::forceRotateToInterfaceOrientation() {
  const OperationLog log{"-[XAdInterstitialViewController forceRotateToInterfaceOrientation]"};
  const auto self = shared_from_this();
  if (presentingViewController() != nullptr) {
    const auto presenter = presentingViewController()->shared_from_this();
    presenter->dismissViewController(
        Animated::no, [presenter, self] { presenter->presentViewController(self, Animated::no); });
  }
  reportLayout();
}

}  // namespace tavo
