#include "ErrorHandler/OperationLog.h"

#include "ErrorHandler/ExtendNSLog.h"

namespace tavo {

void OperationLog::writeStart() const { write("\n\n\nStart: " + std::string{operation_}); }

void OperationLog::writeEnd() const { write("\n\n\nEnd: " + std::string{operation_}); }

void OperationLog::write(std::string message) const {
  ExtendNSLog(file_, line_, operation_, std::move(message));
}

}  // namespace tavo
