#pragma once

#include <functional>
#include <memory>
#include <string>

#include "AdController/ResponseParser/VASTXMLParser/VastFetch.h"
#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"
#include "AdManager/AdManagerView.h"
#include "AdManager/FilmRoad.h"
#include "AdManager/VastRootQueue.h"
#include "Runtime/Environment.h"
#include "Services/HttpClient.h"
#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo {

// Takes one answer from VAST text to a playing video: the documents of its wrapper chain, the
// choice of the media file, a look whether the file is there, the impressions, the player. What has
// to wait goes on in a later turn. Dropping the road ends it and the video. Main thread only.
class VastRoad : public FilmRoad, public std::enable_shared_from_this<VastRoad> {
 public:
  struct Settings {
    std::weak_ptr<AdManagerView> adView;
    std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, for a pre-roll
    std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
    std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents;  // for the video once it is there
  };
  struct Events {
    std::function<void(const Error&)> failed{};
    // The answer is dealt with, also after a failure or when its view is gone. Called once, last.
    std::function<void()> concluded{};
  };

  [[nodiscard]] static std::shared_ptr<VastRoad> create(std::shared_ptr<Environment> environment,
                                                        Settings settings, Events events);
  ~VastRoad() override;

  // FilmRoad
  void loadVastAd(const std::string& text) override;
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const override { return videoView_; }

 private:
  VastRoad(std::shared_ptr<Environment> environment, Settings settings, Events events)
      : environment_{std::move(environment)},
        settings_{std::move(settings)},
        events_{std::move(events)} {}

  void loadChain(const std::string& text, VastRootQueue::Turn turn);
  [[nodiscard]] VastFetch fetch() const;
  [[nodiscard]] SlotInspection inspection() const;
  void inspectMedia(const XVASTAd& ad, const std::vector<Url>& urls) const;
  void chainLoaded(const VastOutcome& outcome, bool trackingValid);
  void makeVideo(AdManagerView& view, const std::shared_ptr<XVASTAd>& ad);
  void probeMedia(const Url& url);
  void probed(const HttpResult& result);
  void play();
  void trackChainImpressions();
  void fail(const Error& error);

  const std::shared_ptr<Environment> environment_;
  const Settings settings_;
  const Events events_;
  std::shared_ptr<XVASTAd> ad_;
  std::shared_ptr<XVASTVideoView> videoView_;
  std::shared_ptr<HttpClient::Exchange> probe_;
};

}  // namespace tavo
