#include "Slots/PrerollCore.h"

#include <utility>

#include <tavo/SdkErrors.h>

#include "Player/PlayerObject.h"
#include "Slots/ViewReports.h"

namespace tavo::gobject {

PrerollCore::PrerollCore(GObject* object, guint finishedSignal)
    : SlotCore{object},
      finishedSignal_{finishedSignal},
      events_{std::make_shared<const XAdViewDelegate>([this] {
        XAdViewDelegate reports = viewReports(*this);
        reports.xAdViewDidLoad = [this](XAdView&) { loaded(); };
        reports.xAdViewPrerollDidFinishWithPlayer =
            [this](XAdView&, const std::shared_ptr<MoviePlayer>&) { finished(); };
        // There is no place for a page, and nobody would see the one that is counted.
        reports.xAdViewShouldDisplayAdOnWebViewFinishRender = [](XAdView&, WebView&) {
          return false;
        };
        return reports;
      }())} {}

PrerollCore::~PrerollCore() = default;

MobileAdSubTypes PrerollCore::kind() const {
  return view_ && isLoaded() ? view_->mobileAdSubTypes() : MobileAdSubTypes::unknown;
}

void PrerollCore::perform(ClickToAction action, const ClickToActionParameters& parameters) {
  if (view_) view_->performClickToAction(action, parameters);
}

bool PrerollCore::mayStart(GError** error) const {
  if (player_ && playerOf(player_.get())) return true;
  g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_NO_PLAYER,
                      "Give the pre-roll a player before the load.");
  return false;
}

void PrerollCore::start(const std::shared_ptr<XAdSlotConfiguration>& settings) {
  const auto& player = playerOf(player_.get());
  stop();
  const auto view = view_ = XAdView::create(player->bounds());
  view->delegate.set(events_);
  view->setMoviePlayerInstance(player);
  view->setSlotConfiguration(settings);
  const Address& from = address();
  view->loadWithDomainName(from.domain, from.page, from.position, from.keywords, from.query);
}

void PrerollCore::stop() {
  const auto view = std::exchange(view_, nullptr);
  if (!view) return;
  view->delegate.set(nullptr);
  view->releaseMemory();
}

void PrerollCore::end() {
  stop();
  player_ = {};
}

void PrerollCore::loaded() {
  const auto held = owner();
  if (view_ && view_->mobileAdSubTypes() == MobileAdSubTypes::vastBanner) return tellLoaded();
  stop();
  tellFailed(errorOf(makeError(SdkError::noAd, "The answer was no film.")));
}

void PrerollCore::finished() {
  const auto held = owner();
  adIsOver(errorOf(makeError(SdkError::noAd, "There was no ad before the film.")));
  emit(finishedSignal_);
}

}  // namespace tavo::gobject
