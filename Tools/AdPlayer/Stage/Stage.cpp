#include "AdPlayer/Stage/Stage.h"

#include <array>

#include <tavo/gtk/GtkPlatform.h>

#include "Runtime/NotificationCenter.h"
#include "Services/Application.h"

namespace tavo::adplayer {

namespace {

constexpr const char* applicationId = "com.corvanetavo.adplayer";

Platform makePlayerPlatform(const StageOptions& options) {
  return gtk::makePlatform({.applicationId = applicationId,
                            .dataFolder = options.dataFolder,
                            .assumeReachable = true,
                            .adNetworkLibrary = options.adNetwork,
                            .limits = options.limits});
}

}  // namespace

std::string_view nameOf(DeviceEvent event) {
  constexpr std::array<std::string_view, 7> names{"lock",   "unlock",  "background", "foreground",
                                                  "memory", "offline", "online"};
  return names.at(static_cast<std::size_t>(event));
}

Stage::Stage(const StageOptions& options) {
  Platform platform = makePlayerPlatform(options);
  network_ = std::make_shared<NetworkSwitch>(platform.network, platform.http, platform.runLoop);
  platform.network = network_;
  platform.http = network_;
  runtime_ = std::make_unique<Runtime>(platform);
  log_ = std::make_unique<EventLog>(platform.runLoop);
  watchers_ = std::make_unique<Watchers>(*log_, platform.runLoop);
}

void Stage::happen(DeviceEvent event, Phone& phone) {
  log_->add("step", std::string{nameOf(event)});
  auto& centre = runtime_->notifications();
  switch (event) {
    case DeviceEvent::lock:
      phone.setLocked(true);
      return centre.post(notifications::screenLocked);
    case DeviceEvent::unlock:
      phone.setLocked(false);
      return centre.post(notifications::willEnterForeground);
    case DeviceEvent::background:
      return centre.post(notifications::didEnterBackground);
    case DeviceEvent::foreground:
      return centre.post(notifications::willEnterForeground);
    case DeviceEvent::memoryWarning:
      return centre.post(notifications::didReceiveMemoryWarning);
    case DeviceEvent::offline:
      return network_->setOn(false);
    case DeviceEvent::online:
      return network_->setOn(true);
  }
}

}  // namespace tavo::adplayer
