#include "AdController/ResponseParser/JsonObject.h"

#include <simdjson.h>

#include <algorithm>
#include <string_view>

namespace tavo {

namespace {

using simdjson::dom::element;
using simdjson::dom::parser;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view digits = "0123456789";
constexpr std::size_t longIntegerDigits = 19;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The end of the string literal that starts at `at`.
std::size_t endOfString(std::string_view json, std::size_t at) {
  for (++at; at < json.size() && json[at] != '"'; ++at) {
    if (json[at] == '\\') ++at;
  }
  return std::min(at + 1, json.size());
}

// The end of the long integer that starts at `at`, where a value may stand; `at` itself when there
// is none.
std::size_t endOfLongInteger(std::string_view json, std::size_t at) {
  const std::size_t first = at + (json[at] == '-' ? 1U : 0U);
  const auto end = std::min(json.find_first_not_of(digits, first), json.size());
  if (end < first + longIntegerDigits || json[first] == '0') return at;
  auto next = end;
  while (next < json.size() && isBlank(json[next])) ++next;
  const bool endsValue = next < json.size() && std::string_view{",]}"}.find(json[next]) < 3;
  return endsValue ? end : at;
}

// The document with its long integers as strings of the same digits: the reader knows 64 bits only,
// and an identifier of thirty digits must neither lose its end nor cost the ad.
std::string withLongIntegersQuoted(std::string_view json) {
  std::string quoted;
  quoted.reserve(json.size() + 64);
  bool valueMayStart = false;
  for (std::size_t at = 0; at < json.size();) {
    const char c = json[at];
    std::size_t end = at + 1;
    if (c == '"') end = endOfString(json, at);
    const auto integerEnd = valueMayStart ? endOfLongInteger(json, at) : at;
    if (integerEnd > at) {
      quoted.append("\"").append(json.substr(at, integerEnd - at)).append("\"");
      end = integerEnd;
    } else {
      quoted.append(json.substr(at, end - at));
    }
    if (!isBlank(c)) valueMayStart = c == ':' || c == ',' || c == '[';
    at = end;
  }
  return quoted;
}

}  // namespace

JsonObject::JsonObject()
    : parser_{std::make_unique<parser>()}, root_{std::make_unique<element>()} {}
JsonObject::JsonObject(JsonObject&& other) noexcept = default;
JsonObject& JsonObject::operator=(JsonObject&& other) noexcept = default;
JsonObject::~JsonObject() = default;

std::optional<JsonObject> JsonObject::read(const std::string& bytes, int depth) {
  if (bytes.starts_with(byteOrderMark)) return read(bytes.substr(byteOrderMark.size()), depth);
  JsonObject object;
  auto& parser = *object.parser_;
  if (parser.allocate(std::max<std::size_t>(bytes.size(), 64),
                      static_cast<std::size_t>(std::max(depth, 1))) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  auto error = parser.parse(bytes).get(*object.root_);
  if (error == simdjson::NUMBER_ERROR) {
    error = parser.parse(withLongIntegersQuoted(bytes)).get(*object.root_);
  }
  if (error != simdjson::SUCCESS || !object.root_->is_object()) return std::nullopt;
  return object;
}

}  // namespace tavo
