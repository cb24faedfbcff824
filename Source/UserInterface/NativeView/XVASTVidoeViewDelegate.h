#pragma once

#include <functional>
#include <memory>

#include <tavo/Error.h>
#include <tavo/MoviePlayer.h>
#include <tavo/Url.h>

namespace tavo {

class XVASTVideoView;

// What a video ad reports. Main thread; times are seconds into the video. The name's spelling is
// part of the interface.
struct XVASTVidoeViewDelegate {
  // The video plays.
  std::function<void(XVASTVideoView&)> vastVideoAdDidLoad{};
  std::function<void(XVASTVideoView&, const Url&)> vastVideoViewDidClickVideoWithURL{};
  // 0, 1, 2 for a quarter, a half and three quarters.
  std::function<void(XVASTVideoView&, int)> vastVideoViewDidFinishQuartile{};
  std::function<void(XVASTVideoView&, double)> vastVideoViewDidSkipVideo{};
  std::function<void(XVASTVideoView&, double)> vastVideoViewDidPauseVideo{};
  std::function<void(XVASTVideoView&, double)> vastVideoViewDidResume{};
  std::function<void(XVASTVideoView&)> vastVideoViewDidRewind{};
  std::function<void(XVASTVideoView&)> vastVideoViewWillOpenInAppBrowser{};
  std::function<void(XVASTVideoView&)> vastVideoViewDidCloseInAppBrowser{};
  std::function<void(XVASTVideoView&)> vastVideoViewWillLeaveApplication{};
  std::function<void(XVASTVideoView&)> VASTVideoViewDidEnterFullScreen{};
  std::function<void(XVASTVideoView&)> VASTVideoViewDidExitFullScreen{};
  // The pre-roll ended because memory is low.
  std::function<void(XVASTVideoView&)> vastVideoViewDismissOnMemoryWarning{};
  // The pre-roll is over; the host's player has its own content back.
  std::function<void(const std::shared_ptr<MoviePlayer>&)> prerollDidFinishWithPlayer{};
  // The video could not be played to its end; the end of the ad follows.
  std::function<void(const Error&, const std::shared_ptr<MoviePlayer>&)>
      playerDidFinishWithErrorWithPlayer{};
  // The interstitial video is over and wants to be taken off the screen; told once.
  std::function<void()> dismissVastViewController{};
  std::function<void()> dismissVastViewControllerOnMemoryWarning{};
  // Whatever has to outlive a turn of several reports: the host may drop everything in the first.
  std::function<std::shared_ptr<const void>()> hold{};
};

}  // namespace tavo
