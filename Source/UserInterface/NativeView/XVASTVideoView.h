#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/MobileAdTypes.h>
#include <tavo/Observer.h>
#include <tavo/View.h>
#include <tavo/XAdSlotConfiguration.h>

#include "Model/VASTDataModel/XVASTAd.h"
#include "UserInterface/Movie/SkipControl.h"
#include "UserInterface/NativeView/TrackingList.h"
#include "UserInterface/NativeView/VideoClickThrough.h"
#include "UserInterface/NativeView/XMPMoviePlayer.h"
#include "UserInterface/NativeView/XVASTVidoeViewDelegate.h"

namespace tavo {

// A parsed VAST document as an ad that plays: as a pre-roll in the host's player, or as an
// interstitial that fills this view and is left by its close button. Sends the document's tracking
// events and follows clicks. Made with `create`; main thread only.
class XVASTVideoView : public View {
 public:
  [[nodiscard]] static std::shared_ptr<XVASTVideoView> create(
      std::shared_ptr<Environment> environment, const Rect& frame);
  ~XVASTVideoView() override;

  Observer<XVASTVidoeViewDelegate> delegate;

  // Set before `setUpPlayer`.
  Url movieURL;
  std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, for a pre-roll
  bool isVastInterestitial = false;
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  MobileAdSubTypes mobileAdSubTypes = MobileAdSubTypes::vastBanner;

  [[nodiscard]] const std::shared_ptr<XVASTAd>& VASTResponse() const { return VASTResponse_; }
  void setVAStResponse(std::shared_ptr<XVASTAd> response) { VASTResponse_ = std::move(response); }
  [[nodiscard]] const TrackingList& VASTResponseEventTrackingArray() const { return tracking_; }

  // The videos that can be played, the one to play first; empty when there is none.
  [[nodiscard]] std::vector<Url> videoURLFromVASTAd(const XVASTAd& ad) const;
  // Keeps the document and its events, those of the wrappers included; null when it has none.
  const TrackingList& trackingArrayWithVASTResponse(std::shared_ptr<XVASTAd> response);
  // Makes the player and starts it; returns whether there will be a film.
  bool setUpPlayer();

  // Sends every URL that the document has for the event; calling twice sends twice.
  virtual void trackEventWithEventType(TrackingEventType type);
  // Those URLs, in the order of the list; none without a list or with an empty one.
  [[nodiscard]] static std::optional<std::vector<Url>> eventURLArrayWithTrackingEventArray(
      const TrackingList& list, TrackingEventType type);
  // The page behind a click; empty when the document names none.
  [[nodiscard]] virtual Url clickThroughURL() const;
  // Follows a click to `url`, by the slot's settings: out of the application, to the store's sheet,
  // or into the in-app browser, which the second operation shows at once.
  void openUrlInBrowser(const Url& url);
  void openBrowserWithURL(const Url& url);
  void closeInAppBrowser();

  // Who presents a page above the video: the root controller of the window that the video (a
  // pre-roll: the host's player) stands in, or else of the application's; and the controller in
  // front of everything there. Null when there is none.
  [[nodiscard]] ViewController* getRootViewController() const;
  [[nodiscard]] ViewController* currentViewController() const;

  // What a person does on the interstitial, and what is drawn for it.
  virtual void closeButtonClicked();
  void displayCloseButton();
  void displayCloseButtonText(const std::string& text);
  [[nodiscard]] Rect closeButtonFrame() const;
  [[nodiscard]] Rect countdownButtonFrame() const { return closeButtonFrame(); }
  [[nodiscard]] CountdownPlacement getCountdownTimerRect(unsigned position) const;
  void rotateToOrientation();

  void dismissVideo();
  void dismissVideoOnMemoryWarning();
  // Ends everything without a report.
  void releaseMemory();

  // What the in-app browser and the store's sheet report.
  void XInAppBrowserClose();
  void XInAppBrowserWillLeaveApplication();
  void productViewControllerDidFinish();

  [[nodiscard]] const std::shared_ptr<XMPMoviePlayer>& mpMoviePlayer() const { return player_; }
  [[nodiscard]] bool isCloseButtonDisplayed() const { return adCloseButton_.isClose(); }

 protected:
  using Told = XVASTVidoeViewDelegate;

  // Whoever makes a view calls makeObservers next.
  XVASTVideoView(std::shared_ptr<Environment> environment, const Rect& frame)
      : View{frame}, environment_{std::move(environment)} {}
  void makeObservers();

  // What another kind of document does its own way: the player before it starts, a click, the pages
  // that it opens, each look at the video, its sound, and its end.
  virtual void configure(XMPMoviePlayer& player);
  virtual void didClickVideo();
  virtual void willOpenInAppBrowser();
  virtual void playbackMoved(double /*time*/, double /*duration*/) {}
  virtual void soundSwitched(bool /*muted*/) {}
  virtual void clearFilm() {}

  // Where the film is drawn: its player, or this view while there is none.
  [[nodiscard]] View& film();
  [[nodiscard]] const std::shared_ptr<Environment>& environment() const { return environment_; }

 private:
  [[nodiscard]] std::shared_ptr<XMPMoviePlayer> makePlayer();
  [[nodiscard]] ViewController* clickPresenter() const;
  [[nodiscard]] ViewController* loadAfterADelayWithData() const;
  [[nodiscard]] std::shared_ptr<const Window> standingWindow() const;
  void endVideoAfterClick();
  bool endFilm();
  void didFail(const Error& error, const std::shared_ptr<MoviePlayer>& host);
  [[nodiscard]] bool isInterstitial() const {
    return mobileAdSubTypes == MobileAdSubTypes::vastInterstitial;
  }

  const std::shared_ptr<Environment> environment_;
  std::shared_ptr<XVASTAd> VASTResponse_;
  TrackingList tracking_;
  std::shared_ptr<XMPMoviePlayer> player_;
  std::shared_ptr<const XMoviePlayerDelegate> playerEvents_;
  std::shared_ptr<VideoClickThrough> clickThrough_;
  SkipControl adCloseButton_{environment_, {.text = colors::black, .background = {1, 1, 1, 0.1F}}};
  bool dismissed_ = false;
};

}  // namespace tavo
