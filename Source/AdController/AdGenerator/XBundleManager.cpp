#include "AdController/AdGenerator/XBundleManager.h"

#include <tavo/Runtime.h>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Services/Bundle.h"

namespace tavo {

XBundleManager& XBundleManager::sharedManager() {
  const OperationLog log{"+[XBundleManager sharedManager]"};
  return Runtime::current().environment()->shared<XBundleManager>();
}

std::optional<std::string> XBundleManager::bundlePathForResource(std::string_view name,
                                                                 std::string_view type,
                                                                 std::string_view bundle) const {
  const OperationLog log{"+[XBundleManager bundlePathForResource:ofType:]"};
  return bundle_->pathForResource(bundle, name, type);
}

}  // namespace tavo
