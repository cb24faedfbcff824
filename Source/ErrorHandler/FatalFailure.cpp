#include <cstdlib>

#include <tavo/FatalFailure.h>
#include <tavo/Runtime.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Environment.h"

namespace tavo {

FatalFailure& FatalFailure::sharedInstance() {
  return Runtime::current().environment()->shared<FatalFailure>();
}

void FatalFailure::raise(const std::string& reason) const {
  platformLog(reason, LogLevel::error);
  if (handler) {
    handler(reason);
  } else {
    std::abort();
  }
}

}  // namespace tavo
