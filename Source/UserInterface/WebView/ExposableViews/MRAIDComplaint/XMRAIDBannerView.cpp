#include "UserInterface/WebView/ExposableViews/MRAIDComplaint/XMRAIDBannerView.h"

#include <tavo/Button.h>
#include <tavo/SdkErrors.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/ImageDecoder.h"
#include "Values/Translation.h"

namespace tavo {

std::shared_ptr<XMRAIDBannerView> XMRAIDBannerView::create(
    std::shared_ptr<Environment> environment, const Rect& frame,
    const std::shared_ptr<const XMRAIDBannerViewDelegate>& delegate) {
  const OperationLog log{"-[XMRAIDBannerView initWithFrame:Delegate:]"};
  std::shared_ptr<XMRAIDBannerView> banner{new XMRAIDBannerView{std::move(environment), frame}};
  banner->delegate.set(delegate);
  banner->setClipsToBounds(true);
  banner->addTapGesture();
  return banner;
}

XMRAIDBannerView::~XMRAIDBannerView() {
  if (exchange_) exchange_->cancel();
}

void XMRAIDBannerView::addTapGesture() {
  auto gesture = std::make_shared<TapRecognizer>();
  // A button inside the banner, such as a close button, keeps its touches.
  gesture->shouldReceiveTouch = [](View& touched) {
    return dynamic_cast<Button*>(&touched) == nullptr;
  };
  gesture->action = [this](const TapRecognizer& recognizer) { onTap(recognizer); };
  addTapRecognizer(std::move(gesture));
  platformLog("Single Tap Gesture Added");
}

void XMRAIDBannerView::onTap(const TapRecognizer& recognizer) {
  const OperationLog log{"-[XMRAIDBannerView onTap:]"};
  if (recognizer.state == TapRecognizer::State::ended) openUrl(clickThroughUrl);
}

void XMRAIDBannerView::openUrl(const Url& url) {
  const OperationLog log{"-[XMRAIDBannerView openUrl:]"};
  const auto adView = xAdViewInstance.lock();
  if (!adView || !adView->slotConfiguration() || url.empty()) return;
  platformLog("user tapped the image banner, now opening URL");
  adView->openUrlInBrowser(url);
}

void XMRAIDBannerView::loadImageWithURL(const Url& url, std::weak_ptr<ClickThroughHost> xAdView) {
  const OperationLog log{"-[XMRAIDBannerView loadImageWithURL:withXadView:]"};
  xAdViewInstance = std::move(xAdView);
  // The keyboard comes by what opens something, and by nothing else.
  setAccessibilityLabel(clickThroughUrl.empty() ? "" : translated("Open the advertisement"));
  if (exchange_) exchange_->cancel();
  const auto& limits = environment_->limits();
  HttpRequest request{.url = url};
  request.idleTimeout = limits.requestIdleTimeout;
  request.deadline = limits.requestDeadline;
  request.maximumBodyBytes = limits.pictureBytes;
  platformLog("Async Call to load image with URL: " + url.text());
  const std::weak_ptr<View> weak = weak_from_this();
  const int fetch = ++fetch_;
  exchange_ =
      environment_->platform().http->send(std::move(request), [weak, fetch](const auto& result) {
        const auto self = std::static_pointer_cast<XMRAIDBannerView>(weak.lock());
        if (self && self->fetch_ == fetch) self->received(result);
      });
}

void XMRAIDBannerView::received(const HttpResult& result) {
  exchange_.reset();
  if (result.error) {
    platformLog("Error while requesting image asynchronously", LogLevel::warning);
    delegate.tell(&XMRAIDBannerViewDelegate::xStandardBannerAdDidFailWithErrorBannerView,
                  *result.error, *this);
    return;
  }
  const std::weak_ptr<View> weak = weak_from_this();
  environment_->platform().images->decode(
      result.response ? result.response->body : std::string{},
      [weak, fetch = fetch_](const Image& picture) {
        const auto self = std::static_pointer_cast<XMRAIDBannerView>(weak.lock());
        if (self && self->fetch_ == fetch) self->decoded(picture);
      });
}

void XMRAIDBannerView::decoded(const Image& picture) {
  if (picture.empty()) {
    platformLog("Image Data is Nil", LogLevel::warning);
    // Quirk: the load report follows the failure, because hosts arm their refresh on the former.
    delegate.tell(&XMRAIDBannerViewDelegate::xStandardBannerAdDidFailWithErrorBannerView,
                  makeError(SdkError::undecodableImage,
                            "The image could not be initialized from the specified data."),
                  *this);
  } else {
    show(picture);
  }
  platformLog("Image ad loaded successfully");
  delegate.tell(&XMRAIDBannerViewDelegate::xStandardBannerAdDidLoad, *this);
}

void XMRAIDBannerView::show(const Image& picture) {
  const auto adView = xAdViewInstance.lock();
  const auto slot = adView ? adView->slotConfiguration() : nullptr;
  setContentMode(ContentMode::center);
  if (!isScalingAllowed) {
    platformLog(
        "No Scaling, No Aspect ratio, so going ahead with cropping the image to fit the banner "
        "size");
    // Quirk: the frame's origin counts, so a banner that does not stand at zero shows the part of
    // the picture that lies that far from its corner.
    setImage(picture.cropped(frame()));
    return;
  }
  const bool keepsAspect = slot && slot->maintainAspectRatio;
  setContentMode(keepsAspect ? ContentMode::aspectFit : ContentMode::scaleToFill);
  platformLog(keepsAspect ? "Image Scaled with Aspect Ratio." : "Image Scaled to fill.");
  setImage(picture);
}

}  // namespace tavo
