#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AdController/ResponseParser/VASTXMLParser/VastFetch.h"
#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"
#include "AdManager/FilmRoad/FilmRoad.h"
#include "AdManager/FilmRoad/FilmSlot.h"
#include "AdManager/FilmRoad/VastRootQueue.h"
#include "Services/HttpClient.h"
#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo {

// Takes one answer from VAST text to a playing video: the documents of its wrapper chain, the
// choice of the media file, a look whether the file is there, the impressions, the player. What has
// to wait goes on in a later turn. Dropping the road ends it and the video. Main thread only.
class VastRoad : public FilmRoad, public std::enable_shared_from_this<VastRoad> {
 public:
  struct Events {
    std::function<void(const Error&)> failed{};
    // The answer is dealt with, also after a failure or when its view is gone. Called once, last.
    std::function<void()> concluded{};
  };

  [[nodiscard]] static std::shared_ptr<VastRoad> create(FilmSlot slot, Events events);
  ~VastRoad() override;

  // FilmRoad
  void loadVastAd(const std::string& text) override;
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const override { return videoView_; }

 private:
  VastRoad(FilmSlot slot, Events events) : slot_{std::move(slot)}, events_{std::move(events)} {}

  void loadChain(const std::string& text, VastRootQueue::Turn turn);
  [[nodiscard]] VastFetch fetch() const;
  void inspectMedia(const XVASTAd& ad, const std::vector<Url>& urls) const;
  void chainLoaded(const VastOutcome& outcome, bool trackingValid);
  void makeVideo(AdManagerView& view, const std::shared_ptr<XVASTAd>& ad);
  void probed(const HttpResult& result);
  void play();
  void trackChainImpressions();
  void fail(const Error& error);

  const FilmSlot slot_;
  const Events events_;
  std::shared_ptr<XVASTAd> ad_;
  std::shared_ptr<XVASTVideoView> videoView_;
  std::shared_ptr<HttpClient::Exchange> probe_;
};

}  // namespace tavo
