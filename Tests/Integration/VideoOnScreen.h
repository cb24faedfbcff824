#pragma once

#include <cstdlib>
#include <fstream>

#include <tavo/Button.h>
#include <tavo/MoviePlayerFactory.h>
#include <tavo/gtk/MovieSlot.h>

#include "Support/GtkHost.h"
#include "Support/Places.h"
#include "Support/StandInHandlers.h"
#include "Support/Testing.h"

namespace tavo::test {

using adserver::RequestKind;

inline StandInHandlers handlers;  // pages are shown where the system has a handler for them

// No sound device, whatever this machine has: the framework finds no kind of it.
inline const bool silent = g_setenv("GST_PLUGIN_FEATURE_RANK",
                                    "pulsesink:NONE,pipewiresink:NONE,alsasink:NONE,"
                                    "jackaudiosink:NONE,openalsink:NONE,osssink:NONE,"
                                    "oss4sink:NONE",
                                    TRUE) != FALSE;

constexpr Color yellowBar{1, 1, 0, 1};  // the second of seven in the clip

inline std::string clip() { return contentsOf(sampleCampaigns() + "/vast-preroll/clip.mp4"); }

// The sample campaigns, and those that a test adds.
class Campaigns {
 public:
  Campaigns() {
    std::filesystem::copy(sampleCampaigns(), folder_.path("all"),
                          std::filesystem::copy_options::recursive);
  }
  [[nodiscard]] std::string path() const { return folder_.path("all"); }

  // A campaign whose answer is the document `creative`.
  void add(const std::string& name, const std::string& creative) const {
    addFile(name, "creative.xml", creative);
    addFile(name, "answer.json", R"({"Ad":[{"AdType":"text/xml","Text":"${creative.xml}"}]})");
  }
  void addFile(const std::string& campaign, const std::string& name,
               const std::string& text) const {
    folder_.write("all/" + campaign + "/" + name, text);
  }
  // The sample document, with its video at `media`.
  [[nodiscard]] std::string document(
      const std::string& media = "${server}/assets/vast-preroll/clip.mp4") const {
    std::string document = contentsOf(path() + "/vast-preroll/creative.xml");
    const std::string sample = "${server}/assets/vast-preroll/clip.mp4";
    return document.replace(document.find(sample), sample.size(), media);
  }

 private:
  TemporaryFolder folder_;
};

inline const Campaigns& campaigns() {
  static const Campaigns all;
  return all;
}

// Short where a test has to wait for the end of it.
inline Limits videoLimits() {
  Limits limits;
  limits.wrapperChainBudget = Seconds{3};
  return limits;
}

// One host for the whole process: a window with a player of the host's, and its ad slot.
inline GtkHost& host() {
  static GtkHost only{campaigns().path(), {}, {}, videoLimits()};
  return only;
}

// Every test has a new banner and a new player, and a server that has heard nothing.
class VideoOnScreen : public testing::Test {
 protected:
  VideoOnScreen() {
    host().makeBanner();
    *host().settings = {};
    player_ = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
    slot_ = std::make_unique<gtk::MovieSlot>(player_);
    host().column().prepend(*slot_);
    EXPECT_TRUE(host().runUntil([this] { return slot_->get_mapped(); }));
    listen();
    host().banner()->setMoviePlayerInstance(player_);
    host().server().record().clear();
  }
  ~VideoOnScreen() override {
    host().column().remove(*slot_);
    slot_.reset();
  }

  void listen() {
    const auto noteQuartile = [this](XAdView&, int quartile) {
      tell("quartile " + std::to_string(quartile));
    };
    events_ = std::make_shared<XAdViewDelegate>(
        XAdViewDelegate{.xAdViewDidLoad = [this](XAdView&) { tell("didLoad"); },
                        .xAdViewDidFailWithError =
                            [this](XAdView&, const std::optional<Error>& error) {
                              tell("didFail " + std::to_string(error ? error->code : 0));
                              why_ = error ? error->description : "";
                            },
                        .xAdViewPrerollDidFinishWithPlayer =
                            [this](XAdView&, const std::shared_ptr<MoviePlayer>& player) {
                              tell(player == player_ ? "handedBack" : "handedBack another");
                            },
                        .xAdViewDidFinishQuartile = noteQuartile,
                        .xAdViewDidPauseVideo = [this](XAdView&) { tell("didPause"); },
                        .xAdViewDidResume = [this](XAdView&) { tell("didResume"); },
                        .xAdViewDidSkipVideo = [this](XAdView&) { tell("didSkip"); },
                        .interstitialAdDismissed = [this](XAdView&) { tell("dismissed"); }});
    host().banner()->delegate.set(events_);
  }

  // The last thing that a report does: it may end what tells it.
  void tell(const std::string& line) {
    told_.push_back(line);
    if (line == dropsInside_) host().makeBanner();
  }
  [[nodiscard]] bool hasTold(const std::string& line) const {
    return std::find(told_.begin(), told_.end(), line) != told_.end();
  }
  bool waitFor(const std::string& line) {
    return host().runUntil([&] { return hasTold(line); });
  }
  [[nodiscard]] static Lines recorded(RequestKind kind) {
    Lines all;
    for (const auto& request : host().server().record().requests(kind)) {
      all.push_back(request.detail);
    }
    return all;
  }
  [[nodiscard]] static Lines pings() { return recorded(RequestKind::Tracking); }
  [[nodiscard]] static bool waitForPing(const std::string& event) {
    return host().runUntil([&] {
      const auto all = pings();
      return std::find(all.begin(), all.end(), event) != all.end();
    });
  }
  // The button on the video or on what shows it; null while there is none.
  [[nodiscard]] static Button* buttonOn(const View& video) {
    for (const auto& view : video.subviews()) {
      if (auto* button = dynamic_cast<Button*>(view.get())) return button;
      if (auto* button = buttonOn(*view)) return button;
    }
    return nullptr;
  }
  static bool waitForControl(const View& video) {
    return host().runUntil([&] {
      const Button* button = buttonOn(video);
      return button != nullptr && button->isUserInteractionEnabled();
    });
  }
  bool waitForPicture() {
    return host().runUntil([this] {
      double x = 0;
      double y = 0;
      if (!slot_->translate_coordinates(host().window(), 68, 60, x, y)) return false;
      return isYellowAt(x, y);
    });
  }
  // By the place in the window.
  static bool isYellowAt(double x, double y) {
    const Color pixel =
        adplayer::Screenshot{host().window()}.pixel(static_cast<int>(x), static_cast<int>(y));
    return std::abs(pixel.red - yellowBar.red) < 0.1F &&
           std::abs(pixel.green - yellowBar.green) < 0.1F && pixel.blue < 0.15F;
  }

  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> slot_;
  Lines told_;
  std::string why_;          // what the last failure said
  std::string dropsInside_;  // the report inside which the host drops the slot
  std::shared_ptr<const XAdViewDelegate> events_;
};

}  // namespace tavo::test
