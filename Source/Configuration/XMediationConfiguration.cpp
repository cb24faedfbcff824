#include <tavo/XMediationConfiguration.h>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

Url XMediationConfiguration::TAVOURLTemplateWithDomainName(std::string_view /*domainName*/,
                                                           std::string_view /*pageName*/,
                                                           std::string_view /*adPosition*/) const {
  const OperationLog log{
      "-[XMediationConfiguration TAVOURLTemplateWithDomainName:pageName:adPosition:]"};
  return {};
}

}  // namespace tavo
