#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Geometry.h>
#include <tavo/Limits.h>
#include <tavo/Url.h>
#include <tavo/WebView.h>

#include "AdController/AdGenerator/CommandBudget.h"
#include "AdController/AdGenerator/MraidCommandText.h"
#include "AdController/AdGenerator/PictureSaver.h"
#include "AdController/AdGenerator/WebViewAgentHost.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Runtime/SlotInspection.h"
#include "Services/Application.h"
#include "Services/RunLoop.h"

namespace tavo {

// Carries out the commands of one creative through its ad view, at a rate that the host can bear,
// and keeps what the creative has asked for. Commands that need the ad view do nothing without it.
// Main thread only.
class CreativeCommands {
 public:
  // What the commands work with. `openUrl` follows a click.
  struct Means {
    std::shared_ptr<RunLoop> runLoop;
    std::shared_ptr<Application> application;
    std::shared_ptr<WebView> webView;
    std::shared_ptr<XMRAIDEventEmitter> eventEmitter;
    SlotInspection inspection{};
    std::function<void(const Url&)> openUrl;
  };

  CreativeCommands(Means means, const Limits& limits);

  // What the creative has set last; none before it has. Each of its commands replaces the record.
  std::optional<XMRAIDOrientationProperties> orientationParametersDict;
  std::optional<XMRAIDResizeProperties> resizeParametersDict;
  std::optional<XMRAIDExpandProperties> expandParametersDict;
  Rect defaultFrame;  // the ad view's place when the ad expanded last; where closing returns it to

  void setAdView(std::weak_ptr<WebViewAgentHost> adView);

  // A person has touched the creative: it may leave the application once.
  void tapped() { leavingGuard_.tapped(means_.runLoop->now()); }
  // Whether one more command may come in; `command` is for the log.
  [[nodiscard]] bool mayRun(const std::string& command);
  // Whether the creative may follow a click to `url`; a yes counts as done. An address of the
  // host's own scheme does not leave the application.
  [[nodiscard]] bool mayOpen(const Url& url);

  // Carries a command out. One that has no meaning is answered with an error event.
  void handle(const MraidCommand& command);
  // The commands that reach into the user's own data; false for every other name.
  bool handleUserInteractionCommand(const std::string& name, const MraidParameters& parameters);

 private:
  [[nodiscard]] bool mayCarryOut(const MraidCommand& command);
  void inspect(const MraidCommand& command, std::string outcome) const;
  [[nodiscard]] bool noteIfRefused(bool may, const std::string& action) const;
  [[nodiscard]] bool mayLeave(bool may, const std::string& action) const;

  void expandToFrameWithUrl(const MraidCommand& command);
  void handleInit(const MraidCommand& command);
  void closeAdWithUrl(const MraidCommand& command);
  void setExpandProperties(const MraidCommand& command);
  void setResizeProperties(const MraidCommand& command);
  void resizeAdWithUrl(const MraidCommand& command);
  void openPage(const MraidCommand& command);
  void dialFixedNumber(const MraidCommand& command);
  void updateCurrentPosition(const MraidCommand& command);
  void setOrientationPropertiesWith(const MraidCommand& command);
  void handlePlayVideoWithURL(const MraidCommand& command);
  void createCalenderEvent(const std::string& event);
  void storePicture(const MraidParameters& parameters);

  const Means means_;
  CommandBudget budget_;
  LeavingGuard leavingGuard_;
  std::weak_ptr<WebViewAgentHost> adView_;
  std::shared_ptr<PictureSaver> pictureManager_;  // made with the ad view
};

}  // namespace tavo
