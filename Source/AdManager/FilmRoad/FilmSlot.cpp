#include "AdManager/FilmRoad/FilmSlot.h"

#include <string>
#include <utility>

#include "Utilities/XUserAgent.h"

namespace tavo {

namespace {

constexpr int firstHttpFailure = 400;

void inspectHop(const SlotInspection& inspection, int hop, const Url& url,
                const HttpResult& result) {
  if (!inspection.isOn()) return;
  std::string why = "fetched";
  if (result.error) {
    why = "failed: " + result.error->description;
  } else if (!hasDocument(result)) {
    why = "failed: status " + std::to_string(result.response ? result.response->status : 0);
  }
  inspection.tell(InspectionKind::wrapper,
                  "hop " + std::to_string(hop) + " " + why + ": " + url.text(),
                  {{"hop", std::to_string(hop)}, {"url", url.text()}, {"why", why}});
}

}  // namespace

bool hasDocument(const HttpResult& result) {
  return !result.error && result.response && result.response->status < firstHttpFailure;
}

Error playerMissing() {
  return makeError(MovieError::unavailable,
                   "A video in a banner slot needs the host's movie player.");
}

bool FilmSlot::isInterstitial() const {
  const auto view = adView.lock();
  return view && view->mobileAdTypes() == MobileAdTypes::interstitial;
}

MobileAdSubTypes FilmSlot::subType() const {
  return isInterstitial() ? MobileAdSubTypes::vastInterstitial : MobileAdSubTypes::vastBanner;
}

SlotInspection FilmSlot::inspection() const {
  const auto view = adView.lock();
  return {environment->platform().inspection, view ? &view->sceneView() : nullptr};
}

FilmSlot::Fetch FilmSlot::documents() const {
  return [environment = environment, inspection = inspection(), hop = std::make_shared<int>(0)](
             const Url& url, Seconds timeout, HttpCompletion completion) {
    HttpRequest request = environment->shared<XUserAgent>().requestWithin(url, timeout);
    request.slot = inspection.slot;
    request.maximumBodyBytes = environment->limits().vastBytes;
    environment->platform().http->send(
        std::move(request),
        [completion = std::move(completion), inspection, url, hop](const HttpResult& result) {
          inspectHop(inspection, ++*hop, url, result);
          completion(result);
        });
  };
}

std::shared_ptr<HttpClient::Exchange> FilmSlot::probe(const Url& film,
                                                      HttpCompletion completion) const {
  HttpRequest request = environment->shared<XUserAgent>().requestWithin(
      film, environment->limits().mediaProbeTimeout);
  request.method = "HEAD";
  request.slot = inspection().slot;
  return environment->platform().http->send(std::move(request), std::move(completion));
}

void FilmSlot::furnish(XVASTVideoView& film) const {
  film.slotConfiguration = slotConfiguration;
  film.moviePlayerInstance = moviePlayerInstance;
  film.isVastInterestitial = isInterstitial();
  film.mobileAdSubTypes = subType();
}

void FilmSlot::show(AdManagerView& view, const std::shared_ptr<XVASTVideoView>& film) {
  if (!film->isVastInterestitial) return;
  view.sceneView().removeAllSubviews();
  film->setAutoresizingMask(flexibleWidth | flexibleHeight);
  view.sceneView().addSubview(film);
}

void FilmSlot::drop(std::shared_ptr<XVASTVideoView>& film) {
  const auto gone = std::exchange(film, nullptr);
  if (!gone) return;
  gone->delegate.set(nullptr);
  gone->removeFromSuperview();
  gone->releaseMemory();
}

}  // namespace tavo
