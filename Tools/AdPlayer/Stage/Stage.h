#pragma once

#include <gtkmm.h>

#include <memory>
#include <string>

#include <tavo/Runtime.h>

#include "AdPlayer/Events/EventLog.h"
#include "AdPlayer/Events/Watchers.h"
#include "AdPlayer/Stage/NetworkSwitch.h"
#include "AdPlayer/Stage/Phone.h"
#include "AdPlayer/Stage/Session.h"

namespace tavo::adplayer {

// What happens to a phone.
enum class DeviceEvent { lock, unlock, background, foreground, memoryWarning, offline, online };
[[nodiscard]] std::string_view nameOf(DeviceEvent event);

// What pages without an address may be given (Inspection::pageAddress). No such host can be.
inline constexpr const char* addressOfPages = "http://creative.invalid/";

struct StageOptions {
  std::string adNetwork{};   // library of the ad network for mediated ads
  std::string dataFolder{};  // cookies and settings; empty: the user's own
  Limits limits{};
};

// The library with everything around it that a player needs: runtime, network switch, log and
// watchers. Made once, with the toolkit set up, before the first phone.
class Stage {
 public:
  explicit Stage(const StageOptions& options);

  [[nodiscard]] EventLog& log() { return *log_; }
  [[nodiscard]] const Platform& platform() const { return runtime_->platform(); }
  // Lets the phone, the application and the network go through it, and writes it down.
  void happen(DeviceEvent event, Phone& phone);

 private:
  std::shared_ptr<NetworkSwitch> network_;
  std::unique_ptr<Runtime> runtime_;
  std::unique_ptr<EventLog> log_;
  std::unique_ptr<Watchers> watchers_;
};

}  // namespace tavo::adplayer
