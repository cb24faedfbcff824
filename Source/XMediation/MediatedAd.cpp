#include "XMediation/MediatedAd.h"

#include <exception>

#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Services/RunLoop.h"
#include "XMediation/MainThreadDelegate.h"

namespace tavo {

MediatedAd::MediatedAd(XMediationInterface& adapter, std::shared_ptr<RunLoop> runLoop,
                       const std::shared_ptr<MediatedView>& adView, std::shared_ptr<CVAd> network)
    : adapter_{adapter},
      runLoop_{std::move(runLoop)},
      adView_{adView},
      key_{adView.get()},
      network_{std::move(network)} {}

std::weak_ptr<CVAdDelegate> MediatedAd::delegate() {
  if (!delegate_ && state_ != State::over) {
    delegate_ = std::make_shared<MainThreadDelegate>(runLoop_, weak_from_this());
  }
  return delegate_;
}

void MediatedAd::attempt(const std::function<void()>& calls) {
  const auto held = shared_from_this();
  try {
    return calls();
  } catch (const std::exception& exception) {
    platformLog(std::string{"The ad network raised an exception: "} + exception.what(),
                LogLevel::warning);
  } catch (...) {
    platformLog("The ad network raised an exception.", LogLevel::warning);
  }
  failed(makeError(SdkError::mediationImpossible, "The mediation network raised an exception."));
}

// Nothing counts any more from here on, whatever taking the ad away sets off. The network may be in
// the middle of a call of its own: its object goes after this turn.
void MediatedAd::end() {
  state_ = State::over;
  delegate_.reset();
  takeAway();
  if (!network_) return;
  runLoop_->post([network = std::move(network_)] {});
}

void MediatedAd::abandon() {
  if (state_ != State::over) end();
}

void MediatedAd::received() {
  const auto held = shared_from_this();
  const auto adView = adView_.lock();
  if (!adView || state_ != State::loading || !isInPlace()) return;
  state_ = State::presenting;
  attempt([this] { present(); });
  if (state_ != State::presenting) return;
  state_ = State::received;
  adapter_.delegate.tell(&Table::XMediationInterfaceAdDidReceiveWithXAdView, adapter_, *adView);
}

void MediatedAd::failed(const Error& error) {
  const auto held = shared_from_this();
  const auto adView = adView_.lock();
  if (!adView || state_ == State::received || state_ == State::over) return;
  end();
  adapter_.delegate.tell(&Table::XMediationInterfaceAdRequestFailedWithErrorXAdView, adapter_,
                         error, *adView);
}

void MediatedAd::report(Table::Event Table::*event) {
  const auto held = shared_from_this();
  const auto adView = adView_.lock();
  if (!adView || state_ == State::loading || state_ == State::over || !isInPlace()) return;
  adapter_.delegate.tell(event, adapter_, *adView);
}

}  // namespace tavo
