#include "AdController/ResponseParser/StandardsVast/VastText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::size_t longestReference = 12;

struct NamedReference {
  std::string_view name;
  char character;
};
constexpr std::array<NamedReference, 5> namedReferences{
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

std::string utf8Of(std::uint32_t code) {
  const auto tail = [code](unsigned shift) {
    return static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
  };
  if (code < 0x80) return {static_cast<char>(code)};
  if (code < 0x800) return {static_cast<char>(0xC0U | (code >> 6U)), tail(0)};
  if (code < 0x10000) return {static_cast<char>(0xE0U | (code >> 12U)), tail(6), tail(0)};
  return {static_cast<char>(0xF0U | (code >> 18U)), tail(12), tail(6), tail(0)};
}

// The text of "#38" or "#x26"; none for what is no character.
std::optional<std::string> numbered(std::string_view reference) {
  const bool hexadecimal = reference.starts_with("#x") || reference.starts_with("#X");
  const auto digits = reference.substr(hexadecimal ? 2 : 1);
  std::uint32_t code = 0;
  const auto* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, code, hexadecimal ? 16 : 10);
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (digits.empty() || read.ec != std::errc{} || read.ptr != end || code == 0 || surrogate ||
      code > 0x10FFFF) {
    return std::nullopt;
  }
  return utf8Of(code);
}

std::optional<std::string> decodedReference(std::string_view reference) {
  if (reference.starts_with('#')) return numbered(reference);
  for (const auto& named : namedReferences) {
    if (named.name == reference) return std::string{named.character};
  }
  return std::nullopt;
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

std::string decodedReferences(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  while (!text.empty()) {
    const auto mark = std::min(text.find('&'), text.size());
    decoded.append(text.substr(0, mark));
    text.remove_prefix(mark);
    if (text.empty()) break;
    const auto end = text.substr(0, longestReference).find(';');
    const auto character =
        end == std::string_view::npos ? std::nullopt : decodedReference(text.substr(1, end - 1));
    decoded.append(character ? *character : "&");
    text.remove_prefix(character ? end + 1 : 1);
  }
  return decoded;
}

std::string plainText(const XTBXMLElement* element) {
  const auto text = trimmed(XTBXML::textForElement(element));
  return element != nullptr && element->fromSection ? std::string{text} : decodedReferences(text);
}

std::string attributeText(const XTBXMLElement* element, std::string_view name) {
  const XTBXMLAttribute* at = element != nullptr ? element->firstAttribute : nullptr;
  while (at != nullptr && !equalsIgnoringCase(at->name, name)) at = at->next;
  return at != nullptr ? decodedReferences(trimmed(at->value)) : std::string{};
}

std::optional<int> attributeNumber(const XTBXMLElement* element, std::string_view name) {
  const std::string text = attributeText(element, name);
  return isNumber(text) ? std::optional{leadingWholeNumber(text)} : std::nullopt;
}

std::optional<bool> attributeSwitch(const XTBXMLElement* element, std::string_view name) {
  const std::string text = attributeText(element, name);
  if (equalsIgnoringCase(text, "true") || text == "1") return true;
  if (equalsIgnoringCase(text, "false") || text == "0") return false;
  return std::nullopt;
}

// A macro may hold any character, so only what stands before one is taken apart.
std::string absoluteAddress(const Url& base, const std::string& address) {
  const bool absolute = !Url::fromText(address.substr(0, address.find('['))).scheme().empty();
  if (address.empty() || absolute || base.empty() || address.starts_with('[')) return address;
  if (address.starts_with("//")) return std::string{base.scheme()} + ":" + address;
  const auto end = std::min(address.find_first_of("?#["), address.size());
  const std::string path = address.substr(0, end);
  const std::string stem = base.text().substr(0, base.text().find_first_of("?#"));
  const std::string start =
      path.empty() ? stem : resolved(Url::parse(stem), Url::fromText(path)).text();
  return start.empty() ? std::string{} : start + address.substr(end);
}

std::optional<double> vastSeconds(std::string_view text) {
  text = trimmed(text);
  double seconds = 0;
  for (int piece = 0; piece < 3; ++piece) {
    const auto end = piece < 2 ? text.find(':') : text.size();
    const auto number = text.substr(0, end);
    if (end == std::string_view::npos || !isNumber(number)) return std::nullopt;
    seconds = seconds * 60 + leadingNumber(number);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return seconds;
}

std::optional<VastOffset> vastOffset(std::string_view text) {
  text = trimmed(text);
  if (const auto time = vastSeconds(text)) return VastOffset{*time};
  if (isNumber(text)) return VastOffset{leadingNumber(text)};
  if (!text.ends_with('%') || !isNumber(text.substr(0, text.size() - 1))) return std::nullopt;
  const double part = leadingNumber(text) / 100;
  return part <= 1 ? std::optional{VastOffset{part, true}} : std::nullopt;
}

}  // namespace tavo
