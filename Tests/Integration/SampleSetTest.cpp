#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>

#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>
#include <tavo/XGlobalConfiguration.h>

#include "AdServer/ReplyMaker.h"
#include "Headless/HeadlessPlatform.h"
#include "Scene/Window.h"
#include "Support/Places.h"

namespace tavo::test {
namespace {

constexpr const char* server = "http://samples.example";

// How a host has set the mode: for the slot, and for everything.
struct Mode {
  std::optional<bool> slot;
  bool application = false;
};

// A host in memory that plays one campaign of the sample set, answered by what the sample server
// would answer, and writes down all requests and all calls.
class SampleHost {
 public:
  SampleHost(std::string campaign, const Mode& mode) : campaign_{std::move(campaign)} {
    platform_.http->onSend = [this](const HttpRequest& request) { script(request); };
    window_->setRootViewController(root_);
    platform_.application->allWindows = {window_};
    XGlobalConfiguration::sharedInstance().standardsMode = mode.application;
    slot_->standardsMode = mode.slot;
  }
  ~SampleHost() { platform_.application->allWindows.clear(); }

  std::string play() {
    if (campaign_.starts_with("interstitial")) {
      playInterstitial();
    } else {
      playBanner();
    }
    noteWire();
    return text_;
  }

 private:
  void note(const std::string& line) { text_ += "  " + line + "\n"; }

  // Addresses answer as the server would; a film is a scripted one.
  void script(const HttpRequest& request) {
    const std::string url = request.url.text();
    std::string shown = url;
    if (shown.starts_with(server)) shown.erase(0, std::string_view{server}.size());
    note(request.method + " " + shown);
    platform_.http->forget(url);
    if (!url.starts_with(server)) return;
    if (url.ends_with(".mp4")) (*platform_.moviePlayers->movies)[url] = {.duration = 4};
    const std::string path{request.url.path()};
    const auto reply = maker_.replyTo({request.method, path, std::string{request.url.query()}},
                                      adserver::routeOf(path));
    const auto& delivery = reply.delivery;
    headless::ScriptedAnswer answer{.status = static_cast<int>(delivery.status),
                                    .body = reply.body};
    answer.headers.push_back({"Content-Type", delivery.contentType});
    for (const auto& header : delivery.headers) {
      answer.headers.push_back({header.name, header.value});
    }
    answer.delay = std::chrono::duration_cast<Seconds>(delivery.delay);
    answer.neverAnswers = delivery.behaviour == adserver::Behaviour::NeverAnswer;
    if (delivery.behaviour == adserver::Behaviour::CloseEarly) {
      answer.error = makeError(TransportError::connectionLost, "closed");
    }
    platform_.http->answer(url, answer);
  }

  // Every hop with its headers and cookies, byte by byte.
  void noteWire() {
    std::uint64_t sum = 14'695'981'039'346'656'037U;
    const auto add = [&sum](std::string_view text) {
      for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 1'099'511'628'211U;
    };
    for (const auto& request : platform_.http->requests()) {
      add(request.method + request.url.text() + request.body);
      for (const auto& header : request.headers) add(header.name + ":" + header.value + ";");
    }
    note("wire " + std::to_string(sum));
  }

  void playBanner() {
    using V = XAdView;
    const auto events = std::make_shared<XAdViewDelegate>(XAdViewDelegate{
        .xAdViewDidLoad = [this](V&) { note("didLoad"); },
        .xAdViewDidFailWithError =
            [this](V&, const auto& error) {
              note("didFail " + (error ? std::to_string(error->code) : "none"));
            },
        .xAdViewPrerollDidFinishWithPlayer = [this](V&, const auto&) { note("prerollDidFinish"); },
        .xAdViewDidFinishQuartile =
            [this](V&, int index) { note("quartile " + std::to_string(index)); },
        .xAdViewDidPauseVideo = [this](V&) { note("didPause"); },
        .xAdViewDidSkipVideo = [this](V&) { note("didSkip"); }});
    const auto view = XAdView::create({0, 0, 320, 50});
    view->setSlotConfiguration(slot_);
    view->delegate.set(events);
    root_->view()->addSubview(view);
    if (campaign_.starts_with("vast")) {
      view->setMoviePlayerInstance(platform_.moviePlayers->create({0, 60, 320, 180}));
    }
    view->loadWithDomainName("samples.example/ads", campaign_, "Bottom1");
    platform_.runLoop->advance(Seconds{20});
  }

  void playInterstitial() {
    using C = XAdInterstitialViewController;
    const auto events = std::make_shared<XAdInterstitialViewControllerDelegate>(
        XAdInterstitialViewControllerDelegate{
            .xAdInterstitialDidLoad =
                [this](C* controller) {
                  note("didLoad");
                  if (controller != nullptr) {
                    root_->presentViewController(controller->shared_from_this(), Animated::no);
                  }
                },
            .xAdInterstitialDidFailWithError =
                [this](C&, const auto& error) {
                  note("didFail " + (error ? std::to_string(error->code) : "none"));
                },
            .xAdInterstitialDidFinishQuartile =
                [this](C&, int index) { note("quartile " + std::to_string(index)); },
            .xAdInterstitialDismissed = [this](C&) { note("dismissed"); }});
    const auto controller = C::create();
    controller->delegate.set(events);
    controller->slotConfiguration = slot_;
    controller->loadWithDomainName("samples.example/ads", campaign_, "Full");
    platform_.runLoop->advance(Seconds{20});
  }

  const std::string campaign_;
  std::string text_;
  headless::HeadlessPlatform platform_;
  Runtime runtime_{platform_.platform()};
  adserver::RequestRecord record_;
  adserver::ReplyMaker maker_{adserver::CampaignFolder{sampleCampaigns()}, server, record_};
  std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  std::shared_ptr<XAdSlotConfiguration> slot_ = std::make_shared<XAdSlotConfiguration>();
};

std::string transcript(const std::string& campaign, const Mode& mode) {
  return campaign + "\n" + SampleHost{campaign, mode}.play();
}

// The campaigns of the record stand for the library before it had the mode.
TEST(SampleSetTest, WithTheModeOffNotOneByteAndNotOneCallDiffers) {
  std::ifstream file{testData() + "/samples-default.txt"};
  const std::string recorded{std::istreambuf_iterator<char>{file}, {}};
  std::string played;
  for (const auto& campaign : adserver::CampaignFolder{sampleCampaigns()}.names()) {
    SCOPED_TRACE(campaign);
    const std::string plain = transcript(campaign, {});
    EXPECT_EQ(plain, transcript(campaign, {.slot = false, .application = true}));
    if (("\n" + recorded).find("\n" + campaign + "\n") != std::string::npos) played += plain;
  }
  EXPECT_EQ(played, recorded);
  EXPECT_NE(transcript("vast-wrapped", {}), transcript("vast-wrapped", {.slot = true}));
}

}  // namespace
}  // namespace tavo::test
