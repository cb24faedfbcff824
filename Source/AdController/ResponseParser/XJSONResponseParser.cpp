#include "AdController/ResponseParser/XJSONResponseParser.h"

#include "ErrorHandler/OperationLog.h"
#include "Runtime/LivingEnvironment.h"

namespace tavo {

std::optional<JsonObject> XJSONResponseParser::parseJSONResponseWithData(const std::string& data) {
  const OperationLog log{"+[XJSONResponseParser parseJSONResponseWithData:]"};
  return JsonObject::read(data, livingEnvironment()->limits().answerDepth);
}

}  // namespace tavo
