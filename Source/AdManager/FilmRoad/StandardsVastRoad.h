#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Error.h>
#include <tavo/VastCompanionOffer.h>

#include "AdManager/FilmRoad/FilmRoad.h"
#include "AdManager/FilmRoad/FilmSlot.h"
#include "AdManager/FilmRoad/VastFilmFinder.h"
#include "UserInterface/StandardsVideo/StandardsVideoView.h"

namespace tavo {

// Takes one answer from VAST text to its films as the public standards say: the ads in their order,
// each with the file that suits the player, one after the other. While a film plays, the next one
// is sought. Main thread only.
class StandardsVastRoad : public FilmRoad, public std::enable_shared_from_this<StandardsVastRoad> {
 public:
  struct Events {
    std::function<void(const Error&)> failed{};
    // The answer is dealt with: its first film is under way, or there is none. Once.
    std::function<void()> concluded{};
    // A film begins, with its first frame; and what stands beside it.
    std::function<void(const VastAd&)> began{};
    std::function<void(const std::vector<std::shared_ptr<VastCompanionOffer>>&)> companions{};
  };

  // `documentUrl`: to which relative addresses of the answer's own document belong.
  [[nodiscard]] static std::shared_ptr<StandardsVastRoad> create(FilmSlot slot,
                                                                 const Url& documentUrl,
                                                                 Events events);
  ~StandardsVastRoad() override;

  // FilmRoad
  void loadVastAd(const std::string& text) override;
  [[nodiscard]] std::shared_ptr<XVASTVideoView> videoView() const override { return video_; }

 private:
  StandardsVastRoad(FilmSlot slot, Events events)
      : slot_{std::move(slot)}, events_{std::move(events)} {}

  void found(std::optional<VastFilm> film);
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

  const FilmSlot slot_;
  const Events events_;
  std::shared_ptr<VastFilmFinder> finder_;
  std::optional<VastFilm> ready_;
  std::optional<VastFilm> shown_;
  std::shared_ptr<StandardsVideoView> video_;
  std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents_;
  std::function<void()> end_;  // how the host hears of the end, once nothing more follows
  bool isWaiting_ = true;      // no film is on the screen, and the next one plays at once
  bool isExhausted_ = false;
  bool hasPlayed_ = false;
  bool hasFailed_ = false;  // and the host knows
  bool concluded_ = false;
};

}  // namespace tavo
