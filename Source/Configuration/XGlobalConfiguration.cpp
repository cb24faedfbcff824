#include "Configuration/XGlobalConfiguration.h"

#include "Runtime/Runtime.h"

namespace tavo {

XGlobalConfiguration& XGlobalConfiguration::sharedInstance() {
  return Runtime::current().shared<XGlobalConfiguration>();
}

}  // namespace tavo
