#include "SampleInterstitial.h"

#include "SamplePage.h"

namespace sample {

using tavo::CVAdDelegate;

void SampleInterstitial::displayAdFromViewController(
    const std::shared_ptr<tavo::ViewController>& controller) {
  const auto report = [this, alive = life()](Event event) {
    return [this, alive, event] {
      if (!alive.expired()) tell(event);
    };
  };
  const auto page =
      std::make_shared<SamplePage>("A full-screen sample ad", report(&CVAdDelegate::adWillClose),
                                   report(&CVAdDelegate::adDidClose));
  tell(&CVAdDelegate::adWillPresent);
  controller->presentViewController(page, tavo::Animated::yes, report(&CVAdDelegate::adDidPresent));
  if (page->presentingViewController() != nullptr) return;
  // Another page is there already, or the host's window is gone.
  if (const auto heard = delegate_.lock()) {
    heard->adRequestFailedWithError(*this, {"sample.network", 3, "The ad cannot be displayed."});
  }
}

}  // namespace sample
