#include "Slots/BannerCore.h"

#include <utility>

#include "Slots/ViewReports.h"

namespace tavo::gobject {

namespace {

std::shared_ptr<const XAdViewDelegate> bannerReports(BannerCore& core,
                                                     const BannerCore::Signals& signals) {
  XAdViewDelegate reports = viewReports(core);
  const auto tells = [&core](guint signal) {
    return [&core, signal](XAdView&) {
      const auto held = core.owner();
      core.notify("expanded");
      core.emit(signal);
    };
  };
  reports.xAdDidExpand = tells(signals.expanded);
  reports.xAdDidCollapse = tells(signals.collapsed);
  reports.interstitialAdDismissed = [&core, signals](XAdView&) {
    core.emit(signals.filmDismissed);
  };
  reports.interstitialAdDismissedOnMemoryWarning = [&core](XAdView&) {
    core.tell(SlotSignal::memoryLow);
  };
  return std::make_shared<const XAdViewDelegate>(std::move(reports));
}

}  // namespace

BannerCore::BannerCore(GtkWidget* widget, const Signals& signals)
    : SlotCore{G_OBJECT(widget)}, widget_{widget}, events_{bannerReports(*this, signals)} {}

BannerCore::~BannerCore() = default;

GtkWidget* BannerCore::child() const { return slot_ ? GTK_WIDGET(slot_->gobj()) : nullptr; }

void BannerCore::setSize(const Size& size) {
  size_ = size;
  if (view_) {
    const Rect& frame = view_->frame();
    view_->setFrame({frame.x, frame.y, size.width, size.height});
    slot_->queue_resize();
  }
  gtk_widget_queue_resize(widget_);
}

void BannerCore::refresh() {
  const auto held = owner();
  if (view_) view_->refreshAd();
}

void BannerCore::collapse() {
  const auto held = owner();
  if (isExpanded()) view_->closeButtonPressed();
}

MobileAdSubTypes BannerCore::kind() const {
  return view_ ? view_->mobileAdSubTypes() : MobileAdSubTypes::unknown;
}

void BannerCore::perform(ClickToAction action, const ClickToActionParameters& parameters) {
  if (view_) view_->performClickToAction(action, parameters);
}

bool BannerCore::mayStart(GError** error) const {
  if (!isExpanded()) return true;
  g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_EXPANDED,
                      "The ad fills the window: collapse or release it before the load.");
  return false;
}

// A view that is on a refresh timer and out of sight passes loads over; a new one does not.
void BannerCore::start(const std::shared_ptr<XAdSlotConfiguration>& settings) {
  if (!view_) makeView();
  startView(settings);
  if (!isLoading() || !view_ || view_->isLoading()) return;
  dropView();
  makeView();
  startView(settings);
}

void BannerCore::startView(const std::shared_ptr<XAdSlotConfiguration>& settings) {
  const auto view = view_;
  const Address& from = address();
  view->setSlotConfiguration(settings);
  view->loadWithDomainName(from.domain, from.page, from.position, from.keywords, from.query);
}

void BannerCore::stop() {
  if (view_) view_->releaseMemory();
}

void BannerCore::end() { dropView(); }

void BannerCore::makeView() {
  view_ = XAdView::create({0, 0, size_.width, size_.height});
  view_->delegate.set(events_);
  slot_ = std::make_unique<gtk::AdSlot>(view_);
  gtk_widget_set_parent(child(), widget_);
}

void BannerCore::dropView() {
  if (!view_) return;
  const auto view = std::exchange(view_, nullptr);
  view->delegate.set(nullptr);
  view->releaseMemory();
  gtk_widget_unparent(child());
  slot_.reset();
}

}  // namespace tavo::gobject
