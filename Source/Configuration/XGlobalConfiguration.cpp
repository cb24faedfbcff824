#include <tavo/Runtime.h>
#include <tavo/XGlobalConfiguration.h>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"

namespace tavo {

XGlobalConfiguration& XGlobalConfiguration::sharedInstance() {
  const OperationLog log{"+[XGlobalConfiguration sharedInstance]"};
  return Runtime::current().environment()->shared<XGlobalConfiguration>();
}

}  // namespace tavo
