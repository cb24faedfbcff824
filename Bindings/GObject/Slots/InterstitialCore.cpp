#include "Slots/InterstitialCore.h"

#include <gtkmm.h>

#include <utility>

#include <tavo/gtk/AdWindow.h>

#include "Support/Process.h"

namespace tavo::gobject {

using Controller = XAdInterstitialViewController;

InterstitialCore::InterstitialCore(GObject* object, guint dismissedSignal)
    : SlotCore{object},
      dismissedSignal_{dismissedSignal},
      events_{std::make_shared<const Reports>([this] {
        Reports reports = outcomes();
        addEvents(reports);
        return reports;
      }())} {}

InterstitialCore::~InterstitialCore() = default;

InterstitialCore::Reports InterstitialCore::outcomes() {
  return Reports{
      .xAdInterstitialDidLoad = [this](Controller*) { tellLoaded(); },
      .xAdInterstitialDidFailWithError =
          [this](Controller&, const std::optional<Error>& error) {
            const auto held = owner();
            tellFailed(errorOf(error));
            letGo();
          },
      .xAdInterstitialDismissed = [this](Controller&) { dismissed(); },
      .xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender =
          [this](Controller&, WebView&) { return mayShowPage(); },
      .xAdInterstitialViewControllerShouldHandleClickToAction =
          [this](Controller&, ClickToAction action, const ClickToActionParameters& parameters) {
            return mayPerform(action, parameters);
          },
      .xAdInterstitialViewControllerShouldHandleCustomURL =
          [this](Controller&, const Url& url) { tellCustomUrl(url.text()); }};
}

void InterstitialCore::addEvents(Reports& reports) {
  const auto tells = [this](SlotSignal signal) {
    return [this, signal](Controller&) { tell(signal); };
  };
  reports.xAdInterstitialDidClick = [this](Controller&) { tellClicked(); };
  reports.xAdInterstitialDidEnterFullScreen = tells(SlotSignal::fullScreenEntered);
  reports.xAdInterstitialDidExitFullScreen = tells(SlotSignal::fullScreenLeft);
  reports.xAdInterstitialDidSkipVideo = tells(SlotSignal::videoSkipped);
  reports.xAdInterstitialDidFinishQuartile = [this](Controller&, int quartile) {
    tellQuartile(quartile);
  };
  reports.xAdInterstitialDidPauseVideo = tells(SlotSignal::videoPaused);
  reports.xAdInterstitialDidResume = tells(SlotSignal::videoResumed);
  reports.xAdInterstitialDidRewind = tells(SlotSignal::videoRewound);
  reports.xAdInterstitialDidDismissOnMemoryWarning = tells(SlotSignal::memoryLow);
  reports.xAdInterstitialWillOpenInInAppBrowser = tells(SlotSignal::browserOpened);
  reports.xAdInterstitialWillCloseInAppBrowser = tells(SlotSignal::browserClosed);
  reports.xAdInterstitialWillLeaveApplication = tells(SlotSignal::leavesApplication);
}

void InterstitialCore::dismissed() {
  const auto held = owner();
  letGo();
  adIsOver(errorOf(TAVO_ADS_ERROR_RELEASED, "The interstitial was closed."));
  emit(dismissedSignal_);
}

bool InterstitialCore::mayPresent(GtkWindow* window, GError** error) const {
  const auto refuse = [error](TavoAdsError code, const char* why) {
    g_set_error_literal(error, TAVO_ADS_ERROR, code, why);
    return false;
  };
  if (!Process::isUsable(error)) return false;
  if (isPresented()) {
    return refuse(TAVO_ADS_ERROR_ALREADY_PRESENTED, "The interstitial is on the screen.");
  }
  if (!controller_ || !isLoaded()) {
    return refuse(TAVO_ADS_ERROR_NOT_LOADED, "Present the interstitial after it has loaded.");
  }
  if (!gtk_widget_get_mapped(GTK_WIDGET(window))) {
    return refuse(TAVO_ADS_ERROR_NO_WINDOW, "Present the window before the interstitial.");
  }
  return true;
}

bool InterstitialCore::present(GtkWindow* window, GError** error) {
  if (!mayPresent(window, error)) return false;
  const auto held = owner();
  const auto controller = controller_;
  const auto root = gtk::rootViewControllerOf(*Glib::wrap(window));
  holdWith(window);
  root->presentViewController(controller, Animated::yes);
  if (isPresented()) {
    notify("presented");
    return true;
  }
  letGo();
  // Another ad is above the content, or the one of another network, which presents itself.
  g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_ALREADY_PRESENTED,
                      "The window shows another ad, or this one has left it at once.");
  return false;
}

void InterstitialCore::holdWith(GtkWindow* window) {
  letGo();
  self_ = owner();
  window_ = Ref<GtkWindow>::share(window);
  const auto gone =
      +[](GtkWidget*, gpointer core) { static_cast<InterstitialCore*>(core)->dismissed(); };
  destroyed_ = g_signal_connect(window, "destroy", G_CALLBACK(gone), this);
}

void InterstitialCore::letGo() {
  const auto self = std::exchange(self_, {});
  const auto window = std::exchange(window_, {});
  if (window) g_signal_handler_disconnect(window.get(), std::exchange(destroyed_, 0));
  if (self) notify("presented");
}

void InterstitialCore::close() {
  const auto held = owner();
  const auto controller = controller_;
  if (isPresented()) controller->closeInterstitialAd();
}

MobileAdSubTypes InterstitialCore::kind() const {
  return controller_ ? controller_->mobileAdSubTypes() : MobileAdSubTypes::unknown;
}

void InterstitialCore::perform(ClickToAction action, const ClickToActionParameters& parameters) {
  if (controller_) controller_->performClickToAction(action, parameters);
}

bool InterstitialCore::mayStart(GError** error) const {
  if (!isPresented()) return true;
  g_set_error_literal(error, TAVO_ADS_ERROR, TAVO_ADS_ERROR_ALREADY_PRESENTED,
                      "The interstitial is on the screen: load again after it was dismissed.");
  return false;
}

void InterstitialCore::start(const std::shared_ptr<XAdSlotConfiguration>& settings) {
  if (!controller_) {
    controller_ = Controller::create();
    controller_->delegate.set(events_);
  }
  const auto controller = controller_;
  const Address& from = address();
  controller->slotConfiguration = settings;
  controller->loadWithDomainName(from.domain, from.page, from.position, from.keywords, from.query);
}

void InterstitialCore::stop() {
  const auto controller = controller_;
  if (!controller) return;
  if (isPresented()) controller->closeInterstitialAd();
  controller->releaseMemory();
}

void InterstitialCore::end() {
  if (controller_) controller_->delegate.set(nullptr);
  stop();
  controller_.reset();
  letGo();
}

}  // namespace tavo::gobject
