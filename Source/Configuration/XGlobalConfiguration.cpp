#include <tavo/Runtime.h>
#include <tavo/XGlobalConfiguration.h>

#include "Runtime/Environment.h"

namespace tavo {

XGlobalConfiguration& XGlobalConfiguration::sharedInstance() {
  return Runtime::current().environment()->shared<XGlobalConfiguration>();
}

}  // namespace tavo
