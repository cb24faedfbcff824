#include "ErrorHandler/ExtendNSLog.h"

#include <cstdio>

#include <tavo/Runtime.h>
#include <tavo/XGlobalConfiguration.h>

#include "Runtime/Environment.h"
#include "Services/Log.h"

namespace tavo {

bool currentSettingsEnableDebugLogs() {
  const auto environment = Runtime::currentEnvironment();
  return environment && environment->shared<XGlobalConfiguration>().enableDebugLogs;
}

void ExtendNSLog(const char* file, int line, std::string_view functionName, std::string message) {
  if (!isDebugLogEnabled()) return;
  if (!message.ends_with('\n')) message += '\n';
  const std::string_view path = file;
  const std::string name{path.substr(path.find_last_of('/') + 1)};
  std::fprintf(stderr, "\nDebug:\n%s:%d\n%.*s \n%s", name.c_str(), line,
               static_cast<int>(functionName.size()), functionName.data(), message.c_str());
}

void platformLog(std::string_view message, LogLevel level) {
  const auto environment = Runtime::currentEnvironment();
  if (!environment) return;
  const bool isAskedFor = level < LogLevel::shown && isDebugLogEnabled();
  environment->platform().log->write(isAskedFor ? LogLevel::shown : level, message);
}

}  // namespace tavo
