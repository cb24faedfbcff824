#pragma once

#include <functional>
#include <memory>
#include <string>

#include <tavo/Error.h>
#include <tavo/MoviePlayer.h>

#include "Model/VASTDataModel/Elements/XTrackingEvent.h"

namespace tavo {

class XMPMoviePlayer;

// What the player of a video ad reports, and what it asks of whoever shows it. Main thread; times
// are seconds into the video.
struct XMoviePlayerDelegate {
  // Something happened that the document may want to have told.
  std::function<void(TrackingEventType)> trackEventWithEventType{};
  // The video began.
  std::function<void(XMPMoviePlayer&)> playerDidPlayVideo{};
  std::function<void(XMPMoviePlayer&, double)> playerDidPauseVideo{};
  std::function<void(XMPMoviePlayer&, double)> playerDidResume{};
  std::function<void(XMPMoviePlayer&)> playerDidRewindWithVideo{};
  // 0, 1, 2 for a quarter, a half and three quarters.
  std::function<void(XMPMoviePlayer&, int)> playerDidFinishQuartile{};
  // A look at the playing video, and one at its end: the place it has come to, and its length.
  std::function<void(double, double)> playerDidMove{};
  std::function<void(XMPMoviePlayer&, double)> playerDidSkipVideo{};
  std::function<void(XMPMoviePlayer&)> playerDidEnterFullScreen{};
  std::function<void(XMPMoviePlayer&)> playerDidExitFullScreen{};
  // The sound is off now, or on again.
  std::function<void(bool)> playerDidSwitchSound{};
  // The playing video was tapped; it is paused. Without this operation a tap does nothing.
  std::function<void(XMPMoviePlayer&)> playerDidClickVideo{};
  // The pre-roll is over: the host's player has its own content back.
  std::function<void(XMPMoviePlayer&, const std::shared_ptr<MoviePlayer>&)>
      playerPrerollDidFinishWithPlayer{};
  std::function<void(XMPMoviePlayer&)> playerDismissOnMemoryWarning{};
  // The video could not be played, or not to its end; the end of the ad follows.
  std::function<void(XMPMoviePlayer&, const Error&, const std::shared_ptr<MoviePlayer>&)>
      playerDidFinishWithErrorWithPlayer{};
  // Controls that an interstitial's host draws: the close button, or the countdown before it.
  std::function<void()> displayCloseButton{};
  std::function<void(const std::string&)> displayCloseButtonText{};
  // The ad is about to leave the video: what else was put on it goes now.
  std::function<void()> clearVideo{};
  // The interstitial video is over.
  std::function<void()> dismissVideo{};
  std::function<void()> dismissVideoOnMemoryWarning{};
  std::function<void()> closeInAppBrowser{};
  // Whatever has to outlive a turn of several reports: the host may drop everything in the first.
  std::function<std::shared_ptr<const void>()> hold{};
};

}  // namespace tavo
