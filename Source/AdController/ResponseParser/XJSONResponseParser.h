#pragma once

#include <optional>
#include <string>

#include "AdController/ResponseParser/JsonObject.h"

namespace tavo {

// Reads the ad server's answer. Any thread.
class XJSONResponseParser {
 public:
  // The top-level object of the body, or none when the body is not a JSON document with an object
  // at the top. No error is told: what came is somebody else's to judge.
  [[nodiscard]] static std::optional<JsonObject> parseJSONResponseWithData(const std::string& data);
};

}  // namespace tavo
