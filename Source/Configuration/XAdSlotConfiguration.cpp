#include <tavo/XAdSlotConfiguration.h>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

void XAdSlotConfiguration::setRTBRequired() {
  const OperationLog log{"-[XAdSlotConfiguration setRTBRequired]"};
}

}  // namespace tavo
