#include "AdController/ResponseParser/XJSONResponseParser.h"

#include <tavo/Runtime.h>

#include "ErrorHandler/OperationLog.h"

namespace tavo {

std::optional<JsonObject> XJSONResponseParser::parseJSONResponseWithData(const std::string& data) {
  const OperationLog log{"+[XJSONResponseParser parseJSONResponseWithData:]"};
  return JsonObject::read(data, Runtime::current().limits().answerDepth);
}

}  // namespace tavo
