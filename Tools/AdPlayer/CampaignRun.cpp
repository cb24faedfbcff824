#include "AdPlayer/CampaignRun.h"

#include <tavo/Runtime.h>

#include "AdPlayer/Screenshot.h"

namespace tavo::adplayer {

namespace {

constexpr Seconds pictureDistance{0.05};

std::string nameOf(MobileAdSubTypes subType) {
  switch (subType) {
    case MobileAdSubTypes::unknown:
      return "nothing to draw";
    case MobileAdSubTypes::image:
      return "image";
    case MobileAdSubTypes::richMediaBanner:
      return "rich media in a banner";
    case MobileAdSubTypes::richMediaInterstitial:
      return "rich media in an interstitial";
    case MobileAdSubTypes::vastInterstitial:
      return "VAST video in an interstitial";
    case MobileAdSubTypes::vastBanner:
      return "VAST video in a banner";
    case MobileAdSubTypes::redirectImageBanner:
      return "redirect answered with an image";
    case MobileAdSubTypes::redirectHtmlBanner:
      return "redirect answered with HTML";
    case MobileAdSubTypes::redirectInterstitial:
      return "redirect in an interstitial";
  }
  return "unknown";
}

std::string describe(const std::optional<Error>& error) {
  if (!error) return "no error object";
  return std::to_string(error->code) + " " + error->description;
}

}  // namespace

CampaignRun::CampaignRun(PlayerWindow& window, adserver::AdServer& server, EventReport& report,
                         Settings settings, std::function<void(Outcome)> finished)
    : window_{window},
      server_{server},
      report_{report},
      settings_{std::move(settings)},
      finished_{std::move(finished)} {}

void CampaignRun::start() {
  report_.begin(settings_.campaign);
  window_.renewSlot();
  hearServer();
  timer_ = Runtime::current().platform().runLoop->after(settings_.patience, [this] {
    report_.add("end", "no outcome in time");
    conclude(Outcome::nothing);
  });
  const std::string host = server_.baseUrl().substr(std::string_view{"http://"}.size());
  const std::string domain = host + "/Halvern/ads/spoolwire_dx.ads";
  if (settings_.campaign.starts_with("interstitial")) {
    loadInterstitial(domain);
  } else {
    loadBanner(domain);
  }
}

std::shared_ptr<XAdSlotConfiguration> CampaignRun::slotSettings() const {
  auto slot = std::make_shared<XAdSlotConfiguration>();
  slot->scalingAllowed = settings_.scalingAllowed;
  slot->maintainAspectRatio = settings_.maintainAspectRatio;
  return slot;
}

void CampaignRun::loadBanner(const std::string& domain) {
  if (settings_.campaign.starts_with("vast")) window_.lendPlayer();
  hearHost();
  auto& view = *window_.adView();
  view.setSlotConfiguration(slotSettings());
  view.loadWithDomainName(domain, settings_.campaign, "Bottom1", "player=desktop", "sample=1");
}

void CampaignRun::loadInterstitial(const std::string& domain) {
  interstitial_ = std::make_unique<InterstitialStage>(
      window_, report_, [this](Outcome outcome) { conclude(outcome); });
  auto& controller = interstitial_->controller();
  controller.slotConfiguration = slotSettings();
  controller.loadWithDomainName(domain, settings_.campaign, "Full", "player=desktop", "sample=1");
}

void CampaignRun::hearServer() {
  server_.record().setListener([this](const adserver::RecordedRequest& request) {
    std::string text = request.method + " " + request.path;
    if (!request.query.empty()) text += "?" + request.query;
    report_.add(adserver::nameOf(request.kind), text + " -> " + std::to_string(request.status));
  });
}

void CampaignRun::hearHost() {
  events_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad =
          [this](XAdView&) {
            report_.add("callback", "xAdViewDidLoad");
            conclude(Outcome::loaded);
          },
      .xAdViewDidFailWithError =
          [this](XAdView&, const std::optional<Error>& error) {
            report_.add("callback", "xAdView:didFailWithError: " + describe(error));
            conclude(Outcome::failed);
          },
      .xAdViewWillLeaveApplication =
          [this](XAdView&) { report_.add("callback", "xAdViewWillLeaveApplication"); },
      .xAdViewDidDismissOnMemoryWarning =
          [this](XAdView&) { report_.add("callback", "xAdViewDidDismissOnMemoryWarning"); },
      .xAdViewPrerollDidFinishWithPlayer =
          [this](XAdView&, const std::shared_ptr<MoviePlayer>&) {
            report_.add("callback", "xAdView:prerollDidFinishWithPlayer:");
          },
      .xAdViewDidFinishQuartile =
          [this](XAdView&, int quartile) {
            report_.add("callback", "xAdView:didFinishQuartile: " + std::to_string(quartile));
          },
      .xAdViewDidPauseVideo =
          [this](XAdView&) { report_.add("callback", "xAdView:didPauseVideo:"); },
      .xAdViewDidResume = [this](XAdView&) { report_.add("callback", "xAdView:didResume:"); },
      .xAdViewDidSkipVideo = [this](XAdView&) { report_.add("callback", "xAdView:didSkipVideo:"); },
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          [this](XAdView&, WebView&) {
            report_.add("callback", "xAdView:shouldDisplayAdOnWebViewFinishRender: -> yes");
            return true;
          },
      .xAdViewShouldHandleCustomURL =
          [this](XAdView&, const Url& url) {
            report_.add("callback", "xAdView:shouldHandleCustomURL: " + url.text());
            return true;
          }});
  window_.adView()->delegate.set(events_);
}

std::string CampaignRun::classification() const {
  if (interstitial_) return nameOf(interstitial_->controller().mobileAdSubTypes());
  const XAdView& view = *window_.adView();
  return view.isMediationAdServed() ? "handed to another network" : nameOf(view.mobileAdSubTypes());
}

void CampaignRun::conclude(Outcome outcome) {
  if (outcome_) return;
  outcome_ = outcome;
  report_.add("classified", classification());
  timer_ = Runtime::current().platform().runLoop->after(settings_.settling, [this] {
    if (settings_.shotsFolder.empty()) {
      end();
    } else {
      takePicture();
    }
  });
}

// A window that is about to be laid out anew has no picture; the next frame will do.
void CampaignRun::takePicture() {
  const std::string path = settings_.shotsFolder + "/" + settings_.pictureName + ".png";
  if (Screenshot{window_}.save(path)) {
    report_.add("picture", settings_.pictureName + ".png");
    end();
  } else if (--picturesLeft_ > 0) {
    timer_ =
        Runtime::current().platform().runLoop->after(pictureDistance, [this] { takePicture(); });
  } else {
    report_.add("picture", "could not be written: " + path);
    end();
  }
}

void CampaignRun::end() {
  if (interstitial_ && settings_.closesInterstitial) interstitial_->close();
  server_.record().setListener({});
  timer_ = Runtime::current().platform().runLoop->after(
      Seconds{0}, [finished = finished_, outcome = *outcome_] { finished(outcome); });
}

}  // namespace tavo::adplayer
