#include "AdController/ResponseParser/JsonText.h"

#include <simdjson.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "Utilities/NumberText.h"

namespace tavo {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::element_type;
using simdjson::dom::object;

bool isPlainWord(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  });
}

void appendUtf16Unit(std::string& text, unsigned unit) {
  constexpr std::string_view hex = "0123456789abcdef";
  text += "\\U";
  for (int shift = 12; shift >= 0; shift -= 4) text += hex[(unit >> shift) & 15U];
}

void appendCodePoint(std::string& text, unsigned code) {
  if (code >= 0x10000) {
    appendUtf16Unit(text, 0xD800U + ((code - 0x10000U) >> 10U));
    appendUtf16Unit(text, 0xDC00U + ((code - 0x10000U) & 0x3FFU));
  } else {
    appendUtf16Unit(text, code);
  }
}

void appendAsciiCharacter(std::string& text, char c) {
  constexpr std::string_view special = "\a\b\f\n\r\t\v\"\\";
  constexpr std::string_view letters = "abfnrtv\"\\";
  const auto at = special.find(c);
  if (at != std::string_view::npos) {
    text += '\\';
    text += letters[at];
  } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
    const auto code = static_cast<unsigned char>(c);
    text += '\\';
    for (int shift = 6; shift >= 0; shift -= 3) {
      text += static_cast<char>('0' + ((code >> shift) & 7U));
    }
  } else {
    text += c;
  }
}

// How many bytes follow the first one of a UTF-8 sequence; the reader has seen to it that they do.
std::size_t continuationBytes(unsigned char first) {
  if (first >= 0xF0) return 3;
  return first >= 0xE0 ? 2 : 1;
}

void appendQuoted(std::string& text, std::string_view value) {
  text += '"';
  for (std::size_t at = 0; at < value.size(); ++at) {
    const auto first = static_cast<unsigned char>(value[at]);
    if (first < 0x80) {
      appendAsciiCharacter(text, value[at]);
      continue;
    }
    const auto more = continuationBytes(first);
    unsigned code = first & (0x3FU >> more);
    for (std::size_t i = 0; i < more; ++i) {
      code = (code << 6U) | (static_cast<unsigned char>(value[++at]) & 0x3FU);
    }
    appendCodePoint(text, code);
  }
  text += '"';
}

void appendWord(std::string& text, std::string_view word) {
  if (isPlainWord(word)) {
    text += word;
  } else {
    appendQuoted(text, word);
  }
}

std::string indent(std::size_t level) { return std::string(4 * level, ' '); }

void appendNested(std::string& text, const element& value, std::size_t level);

void appendArray(std::string& text, const array& values, std::size_t level) {
  text += indent(level) + "(\n";
  bool first = true;
  for (const element value : values) {
    if (!first) text += ",\n";
    first = false;
    text += indent(level + 1);
    appendNested(text, value, level + 1);
  }
  if (!first) text += '\n';
  text += indent(level) + ")";
}

void appendObject(std::string& text, const object& members, std::size_t level) {
  std::vector<std::pair<std::string_view, element>> sorted;
  for (const auto member : members) sorted.emplace_back(member.key, member.value);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  text += indent(level) + "{\n";
  for (const auto& [key, value] : sorted) {
    text += indent(level + 1);
    appendWord(text, key);
    text += " = ";
    appendNested(text, value, level + 1);
    text += ";\n";
  }
  text += indent(level) + "}";
}

void appendNested(std::string& text, const element& value, std::size_t level) {
  switch (value.type()) {
    case element_type::ARRAY:
      return appendArray(text, value.get_array().value_unsafe(), level);
    case element_type::OBJECT:
      return appendObject(text, value.get_object().value_unsafe(), level);
    case element_type::NULL_VALUE:
      return appendWord(text, "<null>");
    default:
      return appendWord(text, jsonText(value));
  }
}

}  // namespace

std::string jsonText(const element& value) {
  std::string text;
  switch (value.type()) {
    case element_type::STRING:
      return std::string{value.get_string().value_unsafe()};
    case element_type::INT64:
      return std::to_string(value.get_int64().value_unsafe());
    case element_type::UINT64:
      return std::to_string(value.get_uint64().value_unsafe());
    case element_type::DOUBLE:
      return numberText(value.get_double().value_unsafe());
    case element_type::BOOL:
      return value.get_bool().value_unsafe() ? "1" : "0";
    case element_type::NULL_VALUE:
      return "(null)";
    default:
      appendNested(text, value, 0);
      return text;
  }
}

}  // namespace tavo
