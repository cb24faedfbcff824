#include "UserInterface/WebView/BaseViews/SecondPart.h"

#include <utility>

namespace tavo {

SecondPart::SecondPart(const std::shared_ptr<Environment>& environment, WebViewAgentHost& ad,
                       Owner& owner, std::shared_ptr<View> screen)
    : ad_{ad},
      owner_{owner},
      screen_{std::move(screen)},
      placement_{ad.placementType()},
      events_{std::make_shared<WebViewAgentDelegate>(WebViewAgentDelegate{
          .webViewAgentDidFinishLoad = [this](XWebViewAgent&) { shown(); },
          .webViewAgentDidFailWithError = [this](const Error& error) { failed(error); },
          .webViewOpenCustomURL =
              [this](const Url& url) {
                const auto held = hold();
                if (held) owner_.secondPartOpens(url);
              }})},
      // A key of its own: both pages are there at the same time.
      agent_{XWebViewAgent::create(environment, screen_->bounds(), {.owner = &owner}, events_)} {}

SecondPart::~SecondPart() { page()->removeFromSuperview(); }

void SecondPart::load(const Url& url, std::weak_ptr<WebViewAgentHost> self) {
  page()->setFrame(screen_->bounds());
  agent_->loadPage(url, std::move(self));
}

void SecondPart::leave() {
  isOver_ = true;
  if (page()->isLoading()) page()->stopLoading();
  page()->removeFromSuperview();
  screen_ = std::make_shared<View>();  // the real one may be another page's by then
}

void SecondPart::tellPlace(const MraidPlace& place) {
  if (!isReady_ || std::exchange(told_, place) == place) return;
  agent_->eventEmitter()->tellPlace(place, page());
}

void SecondPart::reportError(std::string_view message, std::string_view action) {
  agent_->eventEmitter()->reportErrorMessage(message, action, page());
}

void SecondPart::shown() {
  const auto held = hold();
  if (!held) return;
  page()->setFrame(screen_->bounds());
  owner_.secondPartIsShown();
}

void SecondPart::failed(const Error& error) {
  const auto held = hold();  // the host may drop the ad when it hears of it
  if (held) owner_.secondPartFailed(error);
}

std::shared_ptr<XAdSlotConfiguration> SecondPart::slotConfiguration() const {
  return isOver_ ? nullptr : ad_.slotConfiguration();
}

MobileAdSubTypes SecondPart::mobileAdSubTypes() const {
  return isOver_ ? MobileAdSubTypes::unknown : ad_.mobileAdSubTypes();
}

std::shared_ptr<PictureSaver> SecondPart::makePictureManager(PictureSaver::Failed failed) {
  return ad_.makePictureManager(std::move(failed));
}

void SecondPart::handleInitMRAIDAdWithWebView(
    const PageRef& /*webView*/, const std::shared_ptr<XMRAIDEventEmitter>& /*emitter*/) {
  isReady_ = true;
  told_.reset();
  if (!isOver_) owner_.secondPartIsReady();
}

// The ad is expanded already.
bool SecondPart::expandToFrame(const Rect& /*frame*/, bool /*isCustomClose*/,
                               bool /*isOrientationAllowed*/, const PageRef& /*webView*/) {
  return false;
}

void SecondPart::expandToPage(const Url& /*page*/, bool /*isCustomClose*/,
                              const PageRef& /*webView*/) {}

void SecondPart::collapseToFrame(const Rect& /*frame*/) {
  if (!isOver_) owner_.secondPartCloses();
}

void SecondPart::resizeAd(const std::optional<XMRAIDResizeProperties>& /*properties*/,
                          const PageRef& /*webView*/) {
  reportError("Can not resize while view is already expanded.", "resize");
}

void SecondPart::setExpandPropertiesWithDict(const XMRAIDExpandProperties& properties) {
  if (!isOver_) owner_.secondPartUsesCustomClose(properties.useCustomClose);
}

void SecondPart::setOrientationPropertiesWith(const XMRAIDOrientationProperties& properties,
                                              const PageRef& /*webView*/) {
  if (!isOver_) owner_.secondPartTurns(properties);
}

void SecondPart::updateCurrentPositionOfWebView(const PageRef& /*webView*/) {
  if (!isOver_) owner_.secondPartIsReady();
}

void SecondPart::openUrlInBrowser(const Url& url) {
  if (!isOver_) ad_.openUrlInBrowser(url);
}

void SecondPart::openDiallerWithUrl(const Url& url) {
  if (!isOver_) ad_.openDiallerWithUrl(url);
}

void SecondPart::sendSMSWithUrl(const Url& url) {
  if (!isOver_) ad_.sendSMSWithUrl(url);
}

void SecondPart::sendEmailWithUrl(const Url& url) {
  if (!isOver_) ad_.sendEmailWithUrl(url);
}

void SecondPart::makeFaceTimeCallWithUrl(const Url& url) {
  if (!isOver_) ad_.makeFaceTimeCallWithUrl(url);
}

void SecondPart::createCalenderEvent(const std::string& event) {
  if (!isOver_) ad_.createCalenderEvent(event);
}

void SecondPart::handlePlayVideoWithURL(const Url& url) {
  if (!isOver_) ad_.handlePlayVideoWithURL(url);
}

// It stands nowhere before it has loaded, and its owner hears of its end.
void SecondPart::webViewLeavesScreen(const PageRef& webView) { webView->removeFromSuperview(); }

}  // namespace tavo
