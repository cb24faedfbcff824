#include "Extensions/ScriptObject.h"

#include <cctype>

namespace tavo {

namespace {

bool isBlank(char letter) { return std::isspace(static_cast<unsigned char>(letter)) != 0; }
bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

// Reads one literal. A literal that cannot be read to its end is refused as a whole.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_{text} {}

  // A value that counts, or none. After each call look at isRefused.
  std::optional<ScriptValue> readValue(int depth) {
    skipBlanks();
    if (skip("\"")) return ScriptValue{readString()};
    if (skip("{")) return readObject(depth + 1);
    if (skip("[")) return passOverArray();
    if (skip("true")) return ScriptValue{true};
    if (skip("false")) return ScriptValue{false};
    if (skip("null")) return ScriptValue{nullptr};
    // Quirk: numbers are read and dropped; what an event needs comes as text.
    passOverNumber();
    return std::nullopt;
  }

  [[nodiscard]] bool isRefused() const { return refused_; }

 private:
  bool skip(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }

  // Up to the closing quote, which is consumed.
  std::string readString() {
    std::string read;
    while (true) {
      const auto quote = rest_.find('"');
      if (quote == std::string_view::npos) {
        refused_ = true;
        return {};
      }
      read += rest_.substr(0, quote);
      rest_.remove_prefix(quote + 1);
      if (!read.ends_with('\\')) return read;
      // Quirk: this is the only escape that is decoded, so a text that ends in an escaped
      // backslash runs on to the next quote.
      read.back() = '"';
    }
  }

  std::optional<ScriptValue> readObject(int depth) {
    if (depth > deepestScriptObject) refused_ = true;
    auto object = std::make_shared<ScriptObject>();
    while (!refused_) {
      skip(",");
      skip("\"");
      // Quirk: a name runs to the next quote, whatever stands in between.
      const std::string key = readString();
      skip(":");
      const auto value = refused_ ? std::nullopt : readValue(depth);
      if (!key.empty() && value) object->members.insert_or_assign(key, *value);
      skipBlanks();
      if (skip("}")) return ScriptValue{std::move(object)};
    }
    return std::nullopt;
  }

  // Quirk: only an empty array can be passed over, and its closing bracket stays, to become part of
  // the next name. With elements the walk would stand still for ever: such a text is refused.
  std::optional<ScriptValue> passOverArray() {
    while (!rest_.empty() && (rest_.front() == ',' || isBlank(rest_.front()))) {
      rest_.remove_prefix(1);
    }
    if (!rest_.starts_with(']')) refused_ = true;
    return std::nullopt;
  }

  void passOverDigits() {
    while (!rest_.empty() && isDigit(rest_.front())) rest_.remove_prefix(1);
  }

  void passOverNumber() {
    const auto sign = [this] { return skip("-") || skip("+"); };
    const auto before = rest_;
    sign();
    if (rest_.empty() || (!isDigit(rest_.front()) && rest_.front() != '.')) {
      rest_ = before;
      return;
    }
    passOverDigits();
    if (skip(".")) passOverDigits();
    const auto mantissaEnd = rest_;
    if (!skip("e") && !skip("E")) return;
    sign();
    if (rest_.empty() || !isDigit(rest_.front())) rest_ = mantissaEnd;
    passOverDigits();
  }

  std::string_view rest_;
  bool refused_ = false;
};

}  // namespace

const std::string* ScriptObject::text(std::string_view key) const {
  const auto found = members.find(key);
  return found == members.end() ? nullptr : std::get_if<std::string>(&found->second);
}

std::optional<ScriptObject> dictionaryWithJavaScriptObject(std::string_view text) {
  if (text.size() > longestScriptObject) return std::nullopt;
  Reader reader{text};
  const auto value = reader.readValue(0);
  if (reader.isRefused() || !value) return std::nullopt;
  const auto* object = std::get_if<std::shared_ptr<const ScriptObject>>(&*value);
  return object == nullptr ? std::nullopt : std::optional{**object};
}

}  // namespace tavo
