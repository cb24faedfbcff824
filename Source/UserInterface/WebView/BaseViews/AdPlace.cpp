#include "UserInterface/WebView/BaseViews/AdPlace.h"

#include <algorithm>

#include <tavo/ViewController.h>

#include "RequestEnrichment/ScreenAndVisibility.h"
#include "Scene/Window.h"
#include "UserInterface/WebView/BaseViews/PlaceReport.h"
#include "UserInterface/WebView/BaseViews/ResizeGeometry.h"

namespace tavo {

namespace {

// A page that rests and wakes again with every turn of a wheel costs more than it saves.
constexpr Seconds restDelay{0.5};
constexpr float leastAlpha = 0.01F;

bool isHiddenOrClear(const View& view) {
  for (const View* above = &view; above != nullptr; above = above->superview()) {
    if (above->isHidden() || above->alpha() < leastAlpha) return true;
  }
  return false;
}

bool holdsPage(const View& view) {
  return !view.isHidden() &&
         std::any_of(view.subviews().begin(), view.subviews().end(), [](const auto& subview) {
           return dynamic_cast<const WebView*>(subview.get());
         });
}

// Another ad that has left its slot stands above all of `part`, which is in the window's
// coordinates.
bool isUnderAnotherAd(View& ad, const Rect& part) {
  const auto* const controller = ad.nearestController();
  const auto* const window = ad.window();
  if (controller == nullptr || window == nullptr) return false;
  bool isAbove = false;
  for (const auto& view : ad.nearestController()->view()->subviews()) {
    if (ad.isDescendantOf(*view)) {
      isAbove = true;
    } else if (isAbove && holdsPage(*view) &&
               view->convertTo(window, view->bounds()).contains(part)) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool AdPlace::isSeen(View& container) const {
  const Window* const window = container.window();
  if (window == nullptr) return false;
  const auto* const controller = container.nearestController();
  const Rect part = exposedPart(
      {.ad = container.convertTo(window, container.bounds()),
       .window = window->bounds(),
       .shown = &container == &view_.sceneView() ? shown_ : std::nullopt,
       .isHidden = isHiddenOrClear(container),
       .isCovered = controller != nullptr && window->topViewController() != controller});
  return !part.empty() && !isUnderAnotherAd(container, part);
}

MraidPlace AdPlace::report(MRAIDState state, View& container, bool isElsewhere) const {
  const auto& platform = environment_->platform();
  View& view = view_.sceneView();
  const Size screen = XDeviceScreenBounds(platform).size();
  PlaceFacts facts{.state = state,
                   .isInterstitial = view_.placementType() == PlacementType::interstitial,
                   .isElsewhere = isElsewhere,
                   .screen = screen,
                   .room = {0, 0, screen.width, screen.height},
                   .slot = view.frame(),
                   .resized = container.frame(),
                   .isExposed = isSeen(container)};
  if (ViewController* const controller = view.nearestController()) {
    const View& host = *controller->view();
    facts.room = resizeViewMaxRect(host.bounds(), screen, platform.application->statusBarFrame(),
                                   platform.application->statusBarOrientation());
    facts.slot = view.convertTo(&host, view.bounds());
  }
  return placeReport(facts);
}

void AdPlace::follow(const std::shared_ptr<WebView>& page, bool isSeen) {
  if (!page) return;
  // Outside a window it costs nothing, and nobody would say when it comes there.
  if (isSeen || page->window() == nullptr) return show(page);
  if (page->isAtRest() || rest_.isValid()) return;
  rest_ = environment_->platform().runLoop->after(restDelay, [weak = std::weak_ptr<WebView>{page}] {
    if (const auto unseen = weak.lock()) unseen->setAtRest(true);
  });
}

void AdPlace::follow(const std::shared_ptr<WebView>& page) {
  if (page && page->superview() != nullptr) follow(page, isSeen(*page->superview()));
}

void AdPlace::hide(const std::shared_ptr<WebView>& page) {
  rest_.invalidate();
  if (page) page->setHidden(true);
}

void AdPlace::show(const std::shared_ptr<WebView>& page) {
  rest_.invalidate();
  if (!page) return;
  page->setHidden(false);
  page->setAtRest(false);
}

}  // namespace tavo
