#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <tavo/Error.h>
#include <tavo/ImageView.h>
#include <tavo/Observer.h>

#include "ClickThrough/ClickThroughHost.h"
#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

class XMRAIDBannerView;

// What an image banner reports. Main thread.
struct XMRAIDBannerViewDelegate {
  std::function<void(XMRAIDBannerView&)> xStandardBannerAdDidLoad{};
  std::function<void(const Error&, XMRAIDBannerView&)>
      xStandardBannerAdDidFailWithErrorBannerView{};
};

// An image ad: fetches one picture, fits it to the banner by the slot's scaling rules and follows
// its click-through when it is tapped, or pressed with the keyboard on it. Made with `create`.
class XMRAIDBannerView : public ImageView {
 public:
  [[nodiscard]] static std::shared_ptr<XMRAIDBannerView> create(
      std::shared_ptr<Environment> environment, const Rect& frame,
      const std::shared_ptr<const XMRAIDBannerViewDelegate>& delegate);
  ~XMRAIDBannerView() override;

  Observer<XMRAIDBannerViewDelegate> delegate;
  bool isScalingAllowed = false;
  Url clickThroughUrl;  // empty: a tap opens nothing
  std::weak_ptr<ClickThroughHost> xAdViewInstance;

  // Fetches and shows the picture at `url`. A second call replaces the first. Outcomes reach the
  // delegate: a transport error unchanged; code 1006 for bytes that are no picture, followed by the
  // load report.
  void loadImageWithURL(const Url& url, std::weak_ptr<ClickThroughHost> xAdView);

  // Follows `url`; does nothing without an ad view that has settings.
  void openUrl(const Url& url);

 private:
  XMRAIDBannerView(std::shared_ptr<Environment> environment, const Rect& frame)
      : ImageView{frame}, environment_{std::move(environment)} {}

  void addTapGesture();
  void onTap(const TapRecognizer& recognizer);
  void received(const HttpResult& result);
  void decoded(const Image& picture);
  void show(const Image& picture);

  std::shared_ptr<Environment> environment_;
  std::shared_ptr<HttpClient::Exchange> exchange_;
  int fetch_ = 0;  // counts fetches, so that a late picture of a replaced one is dropped
};

}  // namespace tavo
