#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tavo {

struct ScriptObject;

// null, a truth value, a text or an object.
using ScriptValue =
    std::variant<std::nullptr_t, bool, std::string, std::shared_ptr<const ScriptObject>>;

// The members of an object in a script, by their names.
struct ScriptObject {
  std::map<std::string, ScriptValue, std::less<>> members;

  // The text under `key`; null when there is none, or something other than a text.
  [[nodiscard]] const std::string* text(std::string_view key) const;
};

// What is read at most. A description of an event takes a few hundred bytes and one level.
inline constexpr std::size_t longestScriptObject = std::size_t{256} * 1024;
inline constexpr int deepestScriptObject = 64;

// The object in a script's object literal, read leniently: names may lack their opening quote,
// commas and colons may be missing. Numbers are passed over. None when the text is no object, does
// not end as one, holds an array with elements, or exceeds the bounds above.
[[nodiscard]] std::optional<ScriptObject> dictionaryWithJavaScriptObject(std::string_view text);

}  // namespace tavo
