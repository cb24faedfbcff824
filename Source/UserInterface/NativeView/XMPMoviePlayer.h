#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/MobileAdTypes.h>
#include <tavo/MoviePlayer.h>
#include <tavo/Observer.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Model/VASTDataModel/XVASTAd.h"
#include "Runtime/NotificationCenter.h"
#include "UserInterface/NativeView/ScreenLockWatch.h"
#include "UserInterface/NativeView/SkipPoint.h"
#include "UserInterface/NativeView/TrackingList.h"
#include "UserInterface/NativeView/VideoControl.h"
#include "UserInterface/NativeView/XMoviePlayerDelegate.h"

namespace tavo {

// Plays the one video of an ad, shows its countdown and, from the skip point on, the control to
// leave it, and reports every milestone to its delegate. A pre-roll borrows the host's player and
// hands it back with the content that it had; an interstitial has a player of its own that fills
// this view. Main thread only.
class XMPMoviePlayer : public View, public MoviePlayerClient {
 public:
  // For a pre-roll in the host's player; never null.
  [[nodiscard]] static std::shared_ptr<XMPMoviePlayer> create(
      const std::shared_ptr<MoviePlayer>& moviePlayerInstance);
  [[nodiscard]] static std::shared_ptr<XMPMoviePlayer> createForInterstitial(const Rect& frame);
  ~XMPMoviePlayer() override;

  Observer<XMoviePlayerDelegate> delegate;

  // What to play and by which rules. Set before `setUp`.
  Url movieURL;
  std::shared_ptr<XVASTAd> VASTResponse;
  TrackingList VASTResponseEventTrackingArray;
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  MobileAdSubTypes mobileAdSubTypes = MobileAdSubTypes::vastBanner;
  std::string skipOffset;         // the document's; empty: by the slot's settings
  bool bShowSkipAdLabel = false;  // the skip button may be used
  bool isVastInterestitial = false;

  // Starts the ad, or ends it at once when there is no connection. A host's player that plays
  // already, of its own accord, is left alone: there is no ad then.
  void setUp();
  // Puts the video in place and lets it be fetched; it plays as soon as it can.
  void playAdWithPlayer();

  // What a person or the system does.
  void skipButtonTapped();
  void dismissAdTapped();
  void dismissAdOnMemoryWarning();
  void oneTap();

  // Ends everything without a report; the host's player gets its content back.
  void releaseMemory();
  void registerForNotifications();
  void deregisterNotifications();

  // The progress timer's tick: countdown, skip point and quartiles.
  void updatePlaybackTime();
  void startTimer();
  void killTimer();

  // The countdown or skip control on the video. `addSkipButton` is another way to start it, with
  // the bare number of seconds.
  void displaySkipButtonText(const std::string& text);
  void displaySkipButton();
  void addSkipButton();
  [[nodiscard]] CountdownPlacement getCountdownTimerRect(unsigned position) const;
  [[nodiscard]] Rect skipButtonFrameWithPlayer(const MoviePlayer& player) const;

  [[nodiscard]] const std::shared_ptr<MoviePlayer>& moviePlayerController() const { return movie_; }
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& playerInstance() const { return host_; }
  [[nodiscard]] float skipDelay() const { return skip_.skipDelay; }
  [[nodiscard]] bool isSkipButtonAdded() const { return isSkipButtonAdded_; }
  [[nodiscard]] const VideoControl& skipControl() const { return btnSkip_; }

  // MoviePlayerClient
  void movieDurationAvailable(MoviePlayer& player) override;
  void moviePlaybackStateDidChange(MoviePlayer& player) override;
  void moviePlaybackDidFinish(MoviePlayer& player, MovieFinishReason reason,
                              const std::optional<Error>& error) override;
  void movieDidEnterFullscreen(MoviePlayer& player) override;
  void movieDidExitFullscreen(MoviePlayer& player) override;

 private:
  // The host's content while the ad is in its player.
  struct HostContent {
    Url originalURL;
    double position = 0;  // seconds
    bool autoplay = true;
  };
  enum class Cause { user, memoryWarning };

  XMPMoviePlayer(const Rect& frame, std::shared_ptr<MoviePlayer> host);

  [[nodiscard]] bool isInterstitial() const {
    return mobileAdSubTypes == MobileAdSubTypes::vastInterstitial;
  }
  [[nodiscard]] bool isPreroll() const { return mobileAdSubTypes == MobileAdSubTypes::vastBanner; }
  [[nodiscard]] double now() const { return movie_ ? movie_->currentPlaybackTime() : 0; }

  void setContentForAd();
  void restoreHostContent();
  void handBack(Cause cause);
  void dismiss(Cause cause);
  void clearVideo();
  void dropOwnMovie();
  void addTap();
  void showCountdown(const std::string& text);
  void showControl();
  void showControlAnyway();
  void reportQuartiles();
  void didStartPlaying();
  void didPause();
  void didEnterForeground();
  void hibernate();
  void internetAccessChanged(const Notification& notification);
  void rotateToOrientation();
  void track(TrackingEventType type);

  std::shared_ptr<MoviePlayer> host_;   // null for an interstitial
  std::shared_ptr<MoviePlayer> movie_;  // the one that plays the ad; null once it is dropped
  std::optional<HostContent> hostContent_;
  std::shared_ptr<TapRecognizer> tap_;
  VideoControl btnSkip_{{}};
  SkipPoint skip_{.skipOffset = {}, .skipDelay = -1};
  int iCounterForAdDisplay_ = 0;
  unsigned quartilesReported_ = 0;
  bool isSkipButtonAdded_ = false;
  bool isAdPlayedForFirstTime_ = false;
  bool isPaused_ = false;
  Timer timer_;
  Timer controlTimer_;
  ScreenLockWatch lockWatch_;
  Subscription orientation_;
  Subscription internetAccess_;
  Subscription memoryWarning_;
};

}  // namespace tavo
