#include <tavo/XGlobalConfiguration.h>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

XGlobalConfiguration& XGlobalConfiguration::sharedInstance() {
  const OperationLog log{"+[XGlobalConfiguration sharedInstance]"};
  return livingEnvironment()->shared<XGlobalConfiguration>();
}

}  // namespace tavo
