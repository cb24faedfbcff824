#include <tavo/Runtime.h>
#include <tavo/XErrorHandler.h>

#include "ErrorHandler/OperationLog.h"
#include "ErrorHandler/XDatabase.h"
#include "Services/RunLoop.h"

namespace tavo {

void XErrorHandler::addErrorWithErrorId(const std::string& errorId,
                                        const std::string& errorDescription) {
  const OperationLog log{"+[XErrorHandler addErrorWithErrorId:errorDescription:]"};
  XDatabase database;
  if (const auto context = database.managedObjectContext()) {
    const Date now = Runtime::current().platform().runLoop->today();
    context->insert({errorId, errorDescription, now});
    database.saveContext();
  }
}

}  // namespace tavo
