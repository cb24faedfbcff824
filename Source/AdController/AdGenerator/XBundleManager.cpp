#include "AdController/AdGenerator/XBundleManager.h"

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Services/Bundle.h"

namespace tavo {

XBundleManager& XBundleManager::sharedManager() {
  const OperationLog log{"+[XBundleManager sharedManager]"};
  return livingEnvironment()->shared<XBundleManager>();
}

// The resource bundle of the scripts stands in it.
std::optional<std::string> XBundleManager::bundlePath() const {
  const OperationLog log{"+[XBundleManager bundlePath]"};
  const auto scripts = bundle_->pathForResource({}, "CorvaneTAVOSDKMRAID", "bundle");
  if (!scripts) return std::nullopt;
  return scripts->substr(0, scripts->find_last_of('/'));
}

std::optional<std::string> XBundleManager::bundlePathForResource(std::string_view name,
                                                                 std::string_view type,
                                                                 std::string_view bundle) const {
  const OperationLog log{"+[XBundleManager bundlePathForResource:ofType:]"};
  return bundle_->pathForResource(bundle, name, type);
}

}  // namespace tavo
