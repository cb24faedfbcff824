#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/MobileAdTypes.h>
#include <tavo/MoviePlayer.h>
#include <tavo/Observer.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Model/VASTDataModel/XVASTAd.h"
#include "Runtime/Environment.h"
#include "UserInterface/Movie/SkipControl.h"
#include "UserInterface/NativeView/BorrowedPlayer.h"
#include "UserInterface/NativeView/ProgressTimer.h"
#include "UserInterface/NativeView/SkipProgress.h"
#include "UserInterface/NativeView/TrackingList.h"
#include "UserInterface/NativeView/VideoInterruptions.h"
#include "UserInterface/NativeView/VideoMilestones.h"
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
      std::shared_ptr<Environment> environment,
      const std::shared_ptr<MoviePlayer>& moviePlayerInstance);
  [[nodiscard]] static std::shared_ptr<XMPMoviePlayer> createForInterstitial(
      std::shared_ptr<Environment> environment, const Rect& frame);
  ~XMPMoviePlayer() override;

  Observer<XMoviePlayerDelegate> delegate;

  // What to play and by which rules. Set before `setUp`.
  Url movieURL;
  std::shared_ptr<XVASTAd> VASTResponse;
  TrackingList VASTResponseEventTrackingArray;
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  MobileAdSubTypes mobileAdSubTypes = MobileAdSubTypes::vastBanner;
  std::string skipOffset;  // the document's; empty: by the slot's settings
  // Takes the place of that rule: the skip point of a video of so many seconds.
  std::function<SkipPoint(double duration)> skipRule;
  bool bShowSkipAdLabel = false;  // the skip button may be used
  bool isVastInterestitial = false;

  // Starts the ad, or ends it at once when there is no connection. A host's player that plays
  // already, of its own accord, is left alone: there is no ad then. Returns whether it is set up.
  bool setUp();
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

  // Null once the video is gone.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& moviePlayerController() const { return movie_; }
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& playerInstance() const {
    return borrowed_.host();
  }
  [[nodiscard]] float skipDelay() const { return skip_.skipDelay(); }
  [[nodiscard]] bool isSkipButtonAdded() const { return skip_.isControlShown(); }
  // Shows the control in any case, unless a countdown that leads to it is running by then.
  [[nodiscard]] const Timer& skipTimer() const { return skipTimer_; }
  // Whether the quartile has been reported.
  [[nodiscard]] bool firstQuartile() const { return milestones_.isReached(quartiles[0]); }
  [[nodiscard]] bool midpoint() const { return milestones_.isReached(quartiles[1]); }
  [[nodiscard]] bool thirdQuartile() const { return milestones_.isReached(quartiles[2]); }

  // MoviePlayerClient
  void movieDurationAvailable(MoviePlayer& player) override;
  void moviePlaybackStateDidChange(MoviePlayer& player) override;
  void moviePlaybackDidFinish(MoviePlayer& player, MovieFinishReason reason,
                              const std::optional<Error>& error) override;
  void movieDidEnterFullscreen(MoviePlayer& player) override;
  void movieDidExitFullscreen(MoviePlayer& player) override;
  void movieDidSwitchSound(MoviePlayer& player) override;

 private:
  using Told = XMoviePlayerDelegate;
  enum class Cause { user, memoryWarning, failure };

  XMPMoviePlayer(std::shared_ptr<Environment> environment, const Rect& frame,
                 std::shared_ptr<MoviePlayer> host);

  [[nodiscard]] bool isInterstitial() const {
    return mobileAdSubTypes == MobileAdSubTypes::vastInterstitial;
  }
  [[nodiscard]] bool isPreroll() const { return mobileAdSubTypes == MobileAdSubTypes::vastBanner; }
  [[nodiscard]] double now() const { return movie_ ? movie_->currentPlaybackTime() : 0; }

  void addTap();
  void report(Milestone milestone);
  void reportQuartiles();
  void awaitQuartile();
  void track(TrackingEventType type);
  void showCountdown(const std::string& text);
  void showControl();
  void showControlAnyway();
  void dismiss(Cause cause);
  void handBack(Cause cause);
  void clearVideo();
  void dropOwnMovie();
  void connectionLost();
  void hibernate();
  void didEnterForeground();
  void rotateToOrientation();

  const std::shared_ptr<Environment> environment_;
  BorrowedPlayer borrowed_;             // of nobody, for an interstitial
  std::shared_ptr<MoviePlayer> movie_;  // the one that plays the ad; null once it is dropped
  std::shared_ptr<TapRecognizer> tap_;
  std::string nameOfFilm_;  // the host's, while the ad has one of its own
  SkipControl btnSkip_;
  SkipProgress skip_;
  VideoMilestones milestones_;
  VideoInterruptions interruptions_;
  int iCounterForAdDisplay_ = 0;
  ProgressTimer progress_;
  Timer skipTimer_;
};

}  // namespace tavo
