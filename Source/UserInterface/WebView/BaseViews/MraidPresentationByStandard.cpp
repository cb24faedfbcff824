// What a presentation does for pages that are treated by the standard, and only for them.

#include <utility>

#include "ErrorHandler/ExtendNSLog.h"
#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Runtime/Environment.h"
#include "UserInterface/WebView/BaseViews/MraidPresentation.h"
#include "UserInterface/WebView/BaseViews/PlaceReport.h"

namespace tavo {

void MraidPresentation::tellPlace(MRAIDState state) {
  if (!emitter_) return;
  const auto emitter = emitter_;
  const PageRef page = webView_.lock();
  View& slot = host_.sceneView();
  View& container = page && page->superview() != nullptr ? *page->superview() : slot;
  const MraidPlace place = place_.report(state, container, second_ != nullptr);
  place_.follow(page, place.isViewable);
  if (std::exchange(told_, place) != place) emitter->tellPlace(place, page);
  if (!second_) return;
  const auto ofSecond = place_.report(state, *expandView(), false);
  placeOfSecond_.follow(second_->page(), ofSecond.isViewable);
  second_->tellPlace(ofSecond);
}

void MraidPresentation::shownPartDidChange(const Rect& part) {
  place_.setShownPart(part);
  exposureDidChange();
}

// Before "init" there is nobody to tell, and the answer to it says it all.
void MraidPresentation::exposureDidChange() {
  if (state() == MRAIDState::hidden) return;
  if (webView_.expired()) return place_.follow(pageInSlot());
  if (!followsStandards()) return place_.follow(webView_.lock());
  tellPlace(state());
}

// Of an ad that does not speak to the view.
MraidPresentation::PageRef MraidPresentation::pageInSlot() const {
  for (const auto& view : host_.sceneView().subviews()) {
    if (auto page = std::dynamic_pointer_cast<WebView>(view)) return page;
  }
  return nullptr;
}

void MraidPresentation::webViewJoinsScreen(const PageRef& webView) {
  if (webView_.lock() != webView || !followsStandards()) place_.follow(webView);
}

void MraidPresentation::willLeaveScreen() {
  if (!followsStandards() || webView_.expired()) return;
  endSecondPart();
  auto last = place_.report(state() == MRAIDState::hidden ? MRAIDState::hidden : MRAIDState::normal,
                            host_.sceneView(), false);
  last.isViewable = false;
  emitter_->tellPlace(last, webView_.lock());
}

// The creative takes itself away. The slot stays, and its next ad comes when it is due.
void MraidPresentation::hideAd() {
  tellPlace(MRAIDState::hidden);
  place_.hide(webView_.lock());
}

void MraidPresentation::turnExpanded(const XMRAIDOrientationProperties& properties) {
  const auto rules = effectiveOrientation(properties);
  const auto& controller = expandedViewController();
  controller->allowRotation = rules.allowOrientationChange;
  switch (rules.forceOrientation) {
    case ForceOrientation::portrait:
      controller->forcedOrientation = InterfaceOrientation::portrait;
      break;
    case ForceOrientation::landscape:
      controller->forcedOrientation = InterfaceOrientation::landscapeLeft;
      break;
    case ForceOrientation::none:
      controller->forcedOrientation = XDeviceInterfaceOrientation(environment_->platform());
      break;
  }
  controller->orientationRulesDidChange();
}

void MraidPresentation::expandToPage(const Url& url, bool isCustomClose, const PageRef& webView,
                                     WebViewAgentHost& ad) {
  if (state() == MRAIDState::expanded || state() == MRAIDState::hidden || !emitter_) return;
  const auto refuse = [&](std::string_view why) {
    emitter_->reportErrorMessage(why, "expand", webView);
  };
  if (!url.isHttp()) return refuse("The second page needs an address of the web.");
  if (isScreenTaken()) return refuse("Can not expand while something else covers the screen.");
  adopt(webView);
  if (state() == MRAIDState::resized) {
    undoResize();
    moveWebView(host_.sceneView());
  }
  expandView()->setFrame(expandedViewController()->view()->bounds());
  setCustomCloseButton(isCustomClose);
  turnExpanded(orientation_);
  presentModalView(expandView());
  if (expandView()->window() == nullptr) return refuse("There is no screen to expand on.");
  SecondPart::Owner& owner = *this;
  second_ = std::make_shared<SecondPart>(environment_, ad, owner, expandView());
  const auto second = second_;
  wheel_ = ActivityIndicator::create(expandView());
  wheel_->show();
  expandView()->bringSubviewToFront(*closeButton());
  host_.adDidExpand();
  if (second_ != second) return;  // the host has let go of it
  flags_.adExpanded = true;
  tellPlace(MRAIDState::expanded);
  second->load(url, sharedPart<WebViewAgentHost>(host_.hold(), *second));
}

void MraidPresentation::secondPartIsShown() {
  if (wheel_) wheel_->hide();
  wheel_.reset();
  second_->page()->setFrame(expandView()->bounds());
  expandView()->bringSubviewToFront(*closeButton());
  tellPlace(state());
}

void MraidPresentation::secondPartFailed(const Error& error) {
  const auto emitter = emitter_;
  const PageRef page = webView_.lock();
  collapseToFrame();
  platformLog("The second page is gone: " + error.description);
  if (emitter) emitter->reportErrorMessage("The second page is gone.", "expand", page);
}

void MraidPresentation::secondPartUsesCustomClose(bool isCustomClose) {
  setCustomCloseButton(isCustomClose);
}

void MraidPresentation::secondPartTurns(const XMRAIDOrientationProperties& properties) {
  turnExpanded(properties);
  tellPlace(state());
}

// The page hears that it is over before it goes, in a later turn: it may be what asks.
void MraidPresentation::endSecondPart() {
  if (wheel_) wheel_->hide();
  wheel_.reset();
  const auto second = std::exchange(second_, nullptr);
  if (!second) return;
  auto last = place_.report(MRAIDState::normal, *expandView(), false);
  last.isViewable = false;
  second->tellPlace(last);
  second->leave();
  const auto runLoop = environment_->platform().runLoop;
  second->page()->evaluate("0", [runLoop, second](const auto&) { runLoop->post([second] {}); });
}

void MraidPresentation::expandPropertiesDidChange(const XMRAIDExpandProperties& properties) {
  if (!followsStandards() || second_ || state() != MRAIDState::expanded) return;
  if (host_.placementType() == PlacementType::inlined) {
    setCustomCloseButton(properties.useCustomClose);
  }
}

void MraidPresentation::reportError(std::string_view message, std::string_view action) {
  if (second_) return second_->reportError(message, action);
  if (emitter_) emitter_->reportErrorMessage(message, action, webView_.lock());
}

}  // namespace tavo
