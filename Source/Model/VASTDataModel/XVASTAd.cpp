#include "Model/VASTDataModel/XVASTAd.h"

#include <mutex>

#include "ErrorHandler/OperationLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {
namespace {

struct SharedRoot {
  std::mutex mutex;
  std::shared_ptr<XVASTAd> root = std::make_shared<XVASTAd>();
};

}  // namespace

std::shared_ptr<XVASTAd> XVASTAd::sharedInstance() {
  const OperationLog log{"+[XVASTAd sharedInstance]"};
  auto& shared = livingEnvironment()->shared<SharedRoot>();
  const std::scoped_lock lock{shared.mutex};
  return shared.root;
}

void XVASTAd::resetInstance() {
  const OperationLog log{"+[XVASTAd resetInstance]"};
  auto fresh = std::make_shared<XVASTAd>();
  auto& shared = livingEnvironment()->shared<SharedRoot>();
  const std::scoped_lock lock{shared.mutex};
  shared.root.swap(fresh);  // the old root goes after the lock, if nobody else holds it
}

void XVASTAd::VASTAdAttributes(const AttributeMap& attributes) {
  const OperationLog log{"-[XVASTAd VASTAdAttributes:]"};
  identifier = attributes["id"];
  sequence = attributes["sequence"];
}

}  // namespace tavo
