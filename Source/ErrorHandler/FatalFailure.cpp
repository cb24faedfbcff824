#include <cstdlib>

#include <tavo/FatalFailure.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

FatalFailure& FatalFailure::sharedInstance() { return livingEnvironment()->shared<FatalFailure>(); }

void FatalFailure::raise(const std::string& reason) const {
  platformLog(reason, LogLevel::error);
  if (handler) {
    handler(reason);
  } else {
    std::abort();
  }
}

}  // namespace tavo
