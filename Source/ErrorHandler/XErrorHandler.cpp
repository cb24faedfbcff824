#include <tavo/XErrorHandler.h>

#include "ErrorHandler/OperationLog.h"
#include "ErrorHandler/XDatabase.h"
#include "Runtime/LivingEnvironment.h"
#include "Services/RunLoop.h"

namespace tavo {

void XErrorHandler::addErrorWithErrorId(const std::string& errorId,
                                        const std::string& errorDescription) {
  const OperationLog log{"+[XErrorHandler addErrorWithErrorId:errorDescription:]"};
  const auto environment = livingEnvironment();
  XDatabase database{environment};
  if (const auto context = database.managedObjectContext()) {
    const Date now = environment->platform().runLoop->today();
    context->insert({errorId, errorDescription, now});
    database.saveContext();
  }
}

}  // namespace tavo
