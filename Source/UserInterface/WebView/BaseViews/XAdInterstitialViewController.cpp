#include <utility>

#include <tavo/Runtime.h>
#include <tavo/SdkErrors.h>
#include <tavo/XAdInterstitialViewController.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/LivingEnvironment.h"
#include "Runtime/MainThread.h"
#include "UserInterface/WebView/BaseViews/InterstitialCore.h"

namespace tavo {

namespace {
constexpr Seconds delayAfterNoAd{1.0};
constexpr Seconds delayAfterManagerError{3.0};
}  // namespace

std::shared_ptr<XAdInterstitialViewController> XAdInterstitialViewController::create() {
  requireMainThread("XAdInterstitialViewController::create");
  return std::shared_ptr<XAdInterstitialViewController>{new XAdInterstitialViewController};
}

XAdInterstitialViewController::XAdInterstitialViewController()
    : core_{std::make_unique<InterstitialCore>(Runtime::current().environment(), *this)} {}

XAdInterstitialViewController::~XAdInterstitialViewController() {
  requireMainThread("XAdInterstitialViewController::~XAdInterstitialViewController");
  core_->releaseMemory();
}

std::string XAdInterstitialViewController::corvaneTAVOSDKVersion() {
  const OperationLog log{"+[XAdInterstitialViewController corvaneTAVOSDKVersion]"};
  return XAdView::corvaneTAVOSDKVersion();
}

void XAdInterstitialViewController::loadWithDomainName(const std::string& domainName,
                                                       const std::string& pageName,
                                                       const std::string& adPosition,
                                                       const std::string& keywords,
                                                       const std::string& queryString) {
  requireMainThread("XAdInterstitialViewController::loadWithDomainName");
  const OperationLog log{
      "-[XAdInterstitialViewController "
      "loadWithDomainName:pageName:adPosition:keywords:queryString:]"};
  const auto held = shared_from_this();
  core_->load({domainName, pageName, adPosition, keywords, queryString});
}

void XAdInterstitialViewController::closeInterstitialAd() {
  requireMainThread("XAdInterstitialViewController::closeInterstitialAd");
  const OperationLog log{"-[XAdInterstitialViewController closeInterstitialAd]"};
  core_->closeInterstitialAd();
}

void XAdInterstitialViewController::performClickToAction(
    ClickToAction actionType, const ClickToActionParameters& parameters) {
  requireMainThread("XAdInterstitialViewController::performClickToAction");
  const OperationLog log{"-[XAdInterstitialViewController performClickToAction:parameters:]"};
  if (const auto adView = xadView()) adView->performClickToAction(actionType, parameters);
}

void XAdInterstitialViewController::releaseMemory() {
  requireMainThread("XAdInterstitialViewController::releaseMemory");
  core_->releaseMemory();
}

MobileAdSubTypes XAdInterstitialViewController::mobileAdSubTypes() const {
  requireMainThread("XAdInterstitialViewController::mobileAdSubTypes");
  return xadView() ? xadView()->mobileAdSubTypes() : MobileAdSubTypes::unknown;
}

bool XAdInterstitialViewController::isRequiredDelegateImplementedByPublisher() const {
  requireMainThread("XAdInterstitialViewController::isRequiredDelegateImplementedByPublisher");
  const OperationLog log{
      "-[XAdInterstitialViewController isRequiredDelegateImplementedByPublisher]"};
  return delegate.implements(&XAdInterstitialViewControllerDelegate::xAdInterstitialDidLoad);
}

const std::shared_ptr<XAdView>& XAdInterstitialViewController::xadView() const {
  requireMainThread("XAdInterstitialViewController::xadView");
  return core_->xadView();
}

const std::shared_ptr<ActivityIndicator>& XAdInterstitialViewController::activityindicator() const {
  requireMainThread("XAdInterstitialViewController::activityindicator");
  return core_->activityindicator();
}

const std::shared_ptr<Button>& XAdInterstitialViewController::closeButton() const {
  requireMainThread("XAdInterstitialViewController::closeButton");
  return core_->closeControl().button();
}

void XAdInterstitialViewController::addCloseButton() {
  requireMainThread("XAdInterstitialViewController::addCloseButton");
  const OperationLog log{"-[XAdInterstitialViewController addCloseButton]"};
  core_->closeControl().add();
}

void XAdInterstitialViewController::addCloseButtonWithoutImage() {
  requireMainThread("XAdInterstitialViewController::addCloseButtonWithoutImage");
  const OperationLog log{"-[XAdInterstitialViewController addCloseButtonWithoutImage]"};
  core_->closeControl().addWithoutImage();
}

void XAdInterstitialViewController::addCloseButtonForRedirect() {
  requireMainThread("XAdInterstitialViewController::addCloseButtonForRedirect");
  const OperationLog log{"-[XAdInterstitialViewController addCloseButtonForRedirect]"};
  core_->closeControl().addForRedirect();
}

void XAdInterstitialViewController::expandPropertiesChnaged(
    const XMRAIDExpandProperties& properties) {
  requireMainThread("XAdInterstitialViewController::expandPropertiesChnaged");
  const OperationLog log{"-[XAdInterstitialViewController expandPropertiesChnaged:]"};
  useCustomClose = properties.useCustomClose;
  core_->closeControl().useCustomCloseDidChange();
}

const XMRAIDOrientationProperties* XAdInterstitialViewController::orientationProp() const {
  requireMainThread("XAdInterstitialViewController::orientationProp");
  const OrientationRules& rules = core_->rotation().rules();
  return rules ? &*rules : nullptr;
}

void XAdInterstitialViewController::setOrientationPropertiesWith(
    const XMRAIDOrientationProperties& properties) {
  requireMainThread("XAdInterstitialViewController::setOrientationPropertiesWith");
  const OperationLog log{"-[XAdInterstitialViewController setOrientationPropertiesWith:]"};
  core_->rotation().setRules(properties);
  orientationRulesDidChange();
}

bool XAdInterstitialViewController::shouldAutorotate() const {
  const OperationLog log{"-[XAdInterstitialViewController shouldAutorotate]"};
  return core_->rotation().shouldAutorotate();
}

bool XAdInterstitialViewController::shouldAutorotateToInterfaceOrientation(
    InterfaceOrientation orientation) const {
  requireMainThread("XAdInterstitialViewController::shouldAutorotateToInterfaceOrientation");
  const OperationLog log{
      "-[XAdInterstitialViewController shouldAutorotateToInterfaceOrientation:]"};
  return core_->rotation().shouldAutorotateTo(orientation);
}

OrientationMask XAdInterstitialViewController::supportedInterfaceOrientations() const {
  const OperationLog log{"-[XAdInterstitialViewController supportedInterfaceOrientations]"};
  return supportedOrientations(core_->rotation().rules());
}

InterfaceOrientation XAdInterstitialViewController::preferredInterfaceOrientationForPresentation()
    const {
  requireMainThread("XAdInterstitialViewController::preferredInterfaceOrientationForPresentation");
  const OperationLog log{
      "-[XAdInterstitialViewController preferredInterfaceOrientationForPresentation]"};
  return preferredOrientation(core_->rotation().rules(),
                              XDeviceInterfaceOrientation(livingEnvironment()->platform()));
}

void XAdInterstitialViewController::didRotateFromInterfaceOrientation(
    InterfaceOrientation /*from*/) {
  requireMainThread("XAdInterstitialViewController::didRotateFromInterfaceOrientation");
  const OperationLog log{"-[XAdInterstitialViewController didRotateFromInterfaceOrientation:]"};
  core_->rotation().didRotate();
}

void XAdInterstitialViewController::forceRotateToInterfaceOrientation() {
  requireMainThread("XAdInterstitialViewController::forceRotateToInterfaceOrientation");
  const OperationLog log{"-[XAdInterstitialViewController forceRotateToInterfaceOrientation]"};
  core_->rotation().presentAnew();
}

bool XAdInterstitialViewController::cancelOperation() {
  requireMainThread("XAdInterstitialViewController::cancelOperation");
  const auto held = shared_from_this();
  core_->cancel();
  return true;
}

void XAdInterstitialViewController::didReceiveMemoryWarning() {
  requireMainThread("XAdInterstitialViewController::didReceiveMemoryWarning");
  const OperationLog log{"-[XAdInterstitialViewController didReceiveMemoryWarning]"};
  platformLog("Device is low on memory", LogLevel::warning);
  core_->didReceiveMemoryWarning();
}

void XAdInterstitialViewController::adManagerDidLoad(XAdManager& /*manager*/) {
  requireMainThread("XAdInterstitialViewController::adManagerDidLoad");
  const OperationLog log{"-[XAdInterstitialViewController adManagerDidLoad:]"};
  delegate.tell(&XAdInterstitialViewControllerDelegate::xAdInterstitialDidLoad, this);
}

void XAdInterstitialViewController::adManagerDidFailWithError(const std::optional<Error>& error) {
  requireMainThread("XAdInterstitialViewController::adManagerDidFailWithError");
  const OperationLog log{"-[XAdInterstitialViewController adManagerDidFailWithError:]"};
  platformLog("TAVOSDK: " + (error ? error->description : std::string{"(null)"}),
              LogLevel::warning);
  core_->fail(error, delayAfterManagerError);
}

void XAdInterstitialViewController::xAdViewDidReceiveNoAd(XAdView& /*adView*/) {
  requireMainThread("XAdInterstitialViewController::xAdViewDidReceiveNoAd");
  const OperationLog log{"-[XAdInterstitialViewController xAdViewDidReceiveNoAd:]"};
  platformLog("\n\nNo Ad Received");
  core_->fail(makeError(SdkError::noAd, "No Ad received from server."), delayAfterNoAd);
}

std::shared_ptr<View> XAdInterstitialViewController::loadView() { return core_->makeScreen(); }

void XAdInterstitialViewController::viewDidLoad() {
  const OperationLog log{"-[XAdInterstitialViewController viewDidLoad]"};
  if (!isBeingDismissed()) core_->viewDidLoad();
}

void XAdInterstitialViewController::viewWillAppear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewWillAppear:]"};
  core_->viewWillAppear();
}

void XAdInterstitialViewController::viewDidAppear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewDidAppear:]"};
  if (!isBeingDismissed()) core_->viewDidAppear();
}

void XAdInterstitialViewController::viewDidDisappear(Animated /*animated*/) {
  const OperationLog log{"-[XAdInterstitialViewController viewDidDisappear:]"};
  core_->rotation().rememberOrientation();
}

}  // namespace tavo
