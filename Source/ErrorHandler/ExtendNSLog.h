#pragma once

#include <string>
#include <string_view>

#include <tavo/DebugLogSwitch.h>

#include "Services/Log.h"

namespace tavo {

// The debug log. Writes one entry to the standard error stream: the file's name without its
// folders, the line, the function's name and the message, which ends in one newline. Writes nothing
// while XGlobalConfiguration::enableDebugLogs is off. Any thread; never fails visibly.
void ExtendNSLog(const char* file, int line, std::string_view functionName, std::string message);

// Whether the settings of the current runtime switch the debug log on; false without a runtime.
[[nodiscard]] bool currentSettingsEnableDebugLogs();

// Whether the debug log is on: ask before making an expensive message.
[[nodiscard]] inline bool isDebugLogEnabled() {
  return DebugLogSwitch::isAnyOn() && currentSettingsEnableDebugLogs();
}

// Writes to the platform's log, where the debug setting lifts what is below a warning; quiet
// without a runtime. Any thread.
void platformLog(std::string_view message, LogLevel level = LogLevel::info);

}  // namespace tavo
