#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include <tavo/ConsentStrings.h>
#include <tavo/DebugLogSwitch.h>
#include <tavo/Export.h>
#include <tavo/Location.h>
#include <tavo/XBrowserConfiguration.h>

namespace tavo {

// Settings of the whole application. Set them before the first ad, on the main thread; each is read
// anew whenever it matters. Only the debug switch may be set and read on any thread.
struct TAVO_EXPORT XGlobalConfiguration {
  // The record that counts: the one of the current runtime, made on the first call and once even
  // when several threads ask. It ends with the runtime's environment. Any thread.
  [[nodiscard]] static XGlobalConfiguration& sharedInstance();

  // Hand-over of failed requests to an external ad network, where the slot has not set its own
  // value: 1 or more is on, 0 is off, a negative value is "not set".
  std::int32_t canMediate = -1;

  // Creatives of slots that have not set their own value are treated as the public standards say
  // (VAST 2.0 to 4.2, MRAID 2.0) where that differs from what this library does otherwise.
  bool standardsMode = false;

  // What the addresses of VAST documents are told of the user's consent.
  ConsentStrings consent;

  // The debug log on the standard error stream: the beginning and the end of every operation, and
  // values on the way. Off at first; slow when it is on.
  DebugLogSwitch enableDebugLogs;

  // Where the device is, for the external ad network; none: not told.
  std::optional<Location> mediationTargetedLocation;

  // Toolbar of the in-app browser; not null.
  std::shared_ptr<XBrowserConfiguration> browserConfiguration =
      std::make_shared<XBrowserConfiguration>();
};

}  // namespace tavo
