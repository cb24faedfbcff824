#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <tavo/DebugLogSwitch.h>
#include <tavo/Location.h>
#include <tavo/XBrowserConfiguration.h>

namespace tavo {

// Settings of the whole application.
struct XGlobalConfiguration {
  // The one record of the process, made on the first call. Any thread.
  [[nodiscard]] static XGlobalConfiguration& sharedInstance();

  std::int32_t canMediate = -1;  // 1 or more: on; 0: off; negative: not set
  // Switches the debug log on (off at first); read from every thread that logs.
  DebugLogSwitch enableDebugLogs;
  std::optional<Location> mediationTargetedLocation;  // handed to the mediated network
  std::shared_ptr<XBrowserConfiguration> browserConfiguration =
      std::make_shared<XBrowserConfiguration>();
};

}  // namespace tavo
