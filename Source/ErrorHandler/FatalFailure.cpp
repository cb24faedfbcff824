#include "ErrorHandler/FatalFailure.h"

#include <cstdlib>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Runtime.h"

namespace tavo {

FatalFailure& FatalFailure::sharedInstance() { return Runtime::current().shared<FatalFailure>(); }

void FatalFailure::raise(const std::string& reason) const {
  platformLog(reason);
  if (handler) {
    handler(reason);
  } else {
    std::abort();
  }
}

}  // namespace tavo
