#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/VastAd.h>

#include "Tracker/VastPings.h"
#include "UserInterface/NativeView/XVASTVideoView.h"
#include "UserInterface/StandardsVideo/IconLayer.h"

namespace tavo {

// A film that plays as the public standards say: its events, clicks, skip point and icons come from
// a VastAd. The rest is as in every film.
class StandardsVideoView : public XVASTVideoView {
 public:
  [[nodiscard]] static std::shared_ptr<StandardsVideoView> create(
      std::shared_ptr<Environment> environment, const Rect& frame, std::shared_ptr<const VastAd> ad,
      std::shared_ptr<VastPings> pings);

  [[nodiscard]] const std::shared_ptr<const VastAd>& ad() const { return ad_; }
  [[nodiscard]] const std::shared_ptr<VastPings>& pings() const { return pings_; }
  // The first frame has been shown.
  [[nodiscard]] bool hasStarted() const { return started_; }
  // It was seen to its end, or a person has skipped it: the next film of a pod may follow.
  [[nodiscard]] bool makesRoom() const { return completed_ || skipped_; }

  // XVASTVideoView
  void trackEventWithEventType(TrackingEventType type) override;
  [[nodiscard]] Url clickThroughURL() const override;
  void closeButtonClicked() override;

 protected:
  void configure(XMPMoviePlayer& player) override;
  void didClickVideo() override;
  void willOpenInAppBrowser() override;
  void playbackMoved(double time, double duration) override;
  void soundSwitched(bool muted) override;
  void clearFilm() override;

 private:
  StandardsVideoView(std::shared_ptr<Environment> environment, const Rect& frame,
                     std::shared_ptr<const VastAd> ad, std::shared_ptr<VastPings> pings);

  void setMacros();
  void makeIcons();
  void firstFrame();
  void tellUnmeasured();
  void tellOnce(const std::string& event);
  void tellEach(std::initializer_list<std::string_view> events);
  [[nodiscard]] std::vector<std::string> addressesOf(std::string_view event) const;
  [[nodiscard]] std::string stateText() const;
  [[nodiscard]] bool isSkippable() const;

  const std::shared_ptr<const VastAd> ad_;
  const std::shared_ptr<VastPings> pings_;
  std::shared_ptr<IconLayer> icons_;
  bool started_ = false;
  bool completed_ = false;
  bool skipped_ = false;
  bool paused_ = false;
};

}  // namespace tavo
