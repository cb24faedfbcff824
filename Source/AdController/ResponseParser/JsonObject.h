#pragma once

#include <memory>
#include <optional>
#include <string>

namespace simdjson::dom {
class element;
class parser;
}  // namespace simdjson::dom

namespace tavo {

// A JSON document whose top level is an object, with the memory that it lives in. Can be moved, not
// copied; safe to use on any one thread at a time.
class JsonObject {
 public:
  // Reads the whole of `bytes`; none when they are not valid JSON in valid UTF-8 with an object at
  // the top, or nest deeper than `depth`. A byte order mark is skipped. Integers of any length are
  // welcome, numbers too large for a double are not.
  [[nodiscard]] static std::optional<JsonObject> read(const std::string& bytes, int depth);

  JsonObject(JsonObject&& other) noexcept;
  JsonObject& operator=(JsonObject&& other) noexcept;
  ~JsonObject();

  // The top level; valid as long as this object.
  [[nodiscard]] const simdjson::dom::element& root() const { return *root_; }

 private:
  JsonObject();

  std::unique_ptr<simdjson::dom::parser> parser_;
  std::unique_ptr<simdjson::dom::element> root_;
};

}  // namespace tavo
