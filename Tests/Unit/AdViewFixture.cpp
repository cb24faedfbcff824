#include "Unit/AdViewFixture.h"

namespace tavo::test {

namespace {

std::string text(const std::optional<Error>& error) {
  return error ? std::to_string(error->code) + " " + error->description : "none";
}

}  // namespace

AdViewTest::AdViewTest(const Limits& limits) : platform_{limits}, runtime_{platform_.platform()} {
  platform_.http->onSend = [this](const HttpRequest& request) {
    lines_.push_back(request.method + " " + request.url.text());
  };
  window_->setRootViewController(root_);
  platform_.application->allWindows = {window_};
  platform_.http->answerWith("http://cdn.example/a.png", "image/png", "image 640x100");
  platform_.webViews->onScript = [this](const std::string& script) {
    if (recordsScripts_) lines_.push_back(script);
  };
  events_ = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
      .xAdViewDidLoad = [this](XAdView&) { note("didLoad"); },
      .xAdViewDidFailWithError =
          [this](XAdView&, const std::optional<Error>& error) { note("didFail " + text(error)); },
      .xAdViewDidClickOnAd = [this](XAdView&) { note("didClick"); },
      .xAdViewWillOpenInInAppBrowser = [this](XAdView&) { note("willOpenBrowser"); },
      .xAdViewWillCloseInAppBrowser = [this](XAdView&) { note("willCloseBrowser"); },
      .xAdViewWillLeaveApplication = [this](XAdView&) { note("willLeaveApplication"); },
      .xAdDidExpand = [this](XAdView&) { note("didExpand"); },
      .xAdDidCollapse = [this](XAdView&) { note("didCollapse"); },
      .xAdViewDidDismissOnMemoryWarning = [this](XAdView&) { note("didDismissOnMemoryWarning"); },
      .xAdViewPrerollDidFinishWithPlayer =
          [this](XAdView&, const std::shared_ptr<MoviePlayer>& player) {
            note("prerollDidFinish " + (player ? player->contentUrl().text() : "none"));
          },
      .xAdViewDidFinishQuartile =
          [this](XAdView&, int quartile) { note("quartile " + std::to_string(quartile)); },
      .xAdViewDidPauseVideo = [this](XAdView&) { note("didPause"); },
      .xAdViewDidResume = [this](XAdView&) { note("didResume"); },
      .xAdViewDidSkipVideo = [this](XAdView&) { note("didSkip"); },
      .xAdViewDidRewind = [this](XAdView&) { note("didRewind"); },
      .xAdViewDidEnterFullScreen = [this](XAdView&) { note("didEnterFullScreen"); },
      .xAdViewDidExitFullScreen = [this](XAdView&) { note("didExitFullScreen"); },
      .xAdViewShouldDisplayAdOnWebViewFinishRender =
          [this](XAdView&, WebView&) {
            note("shouldDisplay?");
            return mayRender_;
          },
      .xAdViewShouldHandleCustomURL =
          [this](XAdView&, const Url& url) {
            note("customURL " + url.text());
            return true;
          },
      .xAdViewShouldHandleClickToAction =
          [this](XAdView&, ClickToAction action, const ClickToActionParameters&) {
            note("shouldHandle? " + std::to_string(static_cast<int>(action)));
            return mayClick_;
          },
      .interstitialAdDismissed = [this](XAdView&) { note("interstitialDismissed"); },
      .interstitialAdDismissedOnMemoryWarning =
          [this](XAdView&) { note("interstitialDismissedOnMemoryWarning"); }});
}

// The ad objects go before the runtime that they live in.
AdViewTest::~AdViewTest() { platform_.application->allWindows.clear(); }

void AdViewTest::note(const std::string& line) {
  lines_.push_back(line);
  if (onCallback_) onCallback_(line);
}

void AdViewTest::makeBanner(const Rect& frame) {
  banner_ = XAdView::create(frame);
  banner_->setSlotConfiguration(slot_);
  banner_->delegate.set(events_);
  root_->view()->addSubview(banner_);
}

void AdViewTest::answer(const std::string& body) {
  platform_.http->forget(adUrl);
  platform_.http->answerWith(adUrl, "application/json", body);
}

Lines AdViewTest::loaded(const std::string& body) {
  answer(body);
  load();
  settle();
  return happened();
}

void AdViewTest::showBanner(const std::string& body, const Rect& frame) {
  makeBanner(frame);
  loaded(body);
}

void AdViewTest::creative(const std::string& command) {
  advance(1.1);
  platform_.webViews->last()->navigate(
      {Url::fromText("mraid://" + command), Url::parse("about:blank"), NavigationType::other});
  settle();
}

void AdViewTest::post(std::string_view name) {
  runtime_.notifications().post(name);
  settle();
}

void AdViewTest::drop() {
  if (banner_) banner_->removeFromSuperview();
  banner_.reset();
}

void AdViewTest::dropsInside(const std::string& call) {
  onCallback_ = [this, call](const std::string& line) {
    if (line.starts_with(call)) drop();
  };
}

Lines AdViewTest::happened() { return std::exchange(lines_, {}); }

std::string imageAnswer(const std::string& fileUrl) {
  return R"({"Ad":[{"AdType":"image/png","FileUrl":")" + fileUrl +
         R"(","ImpUrl":"http://track.example/i","ClkUrl":"http://click.example/"}]})";
}

std::string htmlAnswer(const std::string& html) {
  return R"({"Ad":[{"AdType":"text/html","ImpUrl":"http://track.example/i","Text":")" + html +
         R"("}]})";
}

}  // namespace tavo::test
