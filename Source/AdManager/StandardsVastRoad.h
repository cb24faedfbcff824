#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AdController/ResponseParser/StandardsVast/VastAdSource.h"
#include "AdManager/AdManagerView.h"
#include "AdManager/FilmRoad.h"
#include "Runtime/Environment.h"
#include "Runtime/SlotInspection.h"
#include "Services/HttpClient.h"
#include "UserInterface/StandardsVideo/CompanionOffer.h"
#include "UserInterface/StandardsVideo/StandardsMedia.h"
#include "UserInterface/StandardsVideo/StandardsVideoView.h"

namespace tavo {

// Takes one answer from VAST text to its films as the public standards say: the ads in their order,
// each with the file that suits the player, one after the other. While a film plays, the next one
// is sought. Main thread only.
class StandardsVastRoad : public FilmRoad, public std::enable_shared_from_this<StandardsVastRoad> {
 public:
  struct Settings {
    std::weak_ptr<AdManagerView> adView;
    std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, for a pre-roll
    std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
    std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents;
    Url documentUrl;  // to which relative addresses of the answer's own document belong
  };
  struct Events {
    std::function<void(const Error&)> failed{};
    // The answer is dealt with: its first film is under way, or there is none. Once.
    std::function<void()> concluded{};
    // A film begins, with its first frame; and what stands beside it.
    std::function<void(const VastAd&)> began{};
    std::function<void(const std::vector<std::shared_ptr<VastCompanionOffer>>&)> companions{};
  };

  [[nodiscard]] static std::shared_ptr<StandardsVastRoad> create(
      std::shared_ptr<Environment> environment, Settings settings, Events events);
  ~StandardsVastRoad() override;

  // FilmRoad
  void loadVastAd(const std::string& text) override;
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const override { return video_; }

 private:
  // A film that is ready to be played.
  struct Film {
    std::shared_ptr<const VastAd> ad;
    VastTrail chain;
    std::shared_ptr<VastPings> pings;
    std::vector<VastMediaFile> files;  // the best first
    std::size_t file = 0;
  };

  StandardsVastRoad(std::shared_ptr<Environment> environment, Settings settings, Events events);

  // The way to the next film.
  [[nodiscard]] VastAdSource::Fetch fetch() const;
  [[nodiscard]] SlotInspection inspection() const;
  void seekAfter(bool shown);
  void received(const std::optional<VastTurn>& turn);
  [[nodiscard]] std::shared_ptr<VastPings> makePings(const VastTurn& turn) const;
  [[nodiscard]] MediaWish mediaWish() const;
  void lookForMedia();
  void looked(const HttpResult& result);
  void refuse(VastErrorCode code, const Error& error);
  void tellErrors(VastErrorCode code, const std::vector<std::string>& addresses);

  // The film on the screen.
  void makeObservers();
  void playNext();
  void playing();
  void offerCompanions();
  void didFail(const Error& error, const std::shared_ptr<MoviePlayer>& host);
  void prerollEnded(const std::shared_ptr<MoviePlayer>& host);
  void interstitialEnded();
  void goOn(const std::function<void()>& end);
  void dropReady();
  void dropFilm();
  void exhausted();
  void conclude();
  [[nodiscard]] bool isInterstitial() const;

  const std::shared_ptr<Environment> environment_;
  const Settings settings_;
  const Events events_;
  std::shared_ptr<VastAdSource> source_;
  std::vector<std::string> playableTypes_;
  std::shared_ptr<VastPings> breakPings_;  // of failures without an ad
  std::shared_ptr<VastPings> errorPings_;  // of the failure that is about to be told
  std::string transaction_;
  double contentPlayhead_ = -1;

  std::optional<Film> sought_;  // whose file is looked for
  std::optional<Film> ready_;
  std::optional<Film> shown_;
  std::shared_ptr<HttpClient::Exchange> probe_;
  std::shared_ptr<StandardsVideoView> video_;
  std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents_;
  std::optional<Error> lastError_;
  std::function<void()> end_;  // how the host hears of the end, once nothing more follows
  bool isWaiting_ = true;      // no film is on the screen, and the next one plays at once
  bool isExhausted_ = false;
  bool hasPlayed_ = false;
  bool hasFailed_ = false;  // and the host knows
  bool concluded_ = false;
};

}  // namespace tavo
