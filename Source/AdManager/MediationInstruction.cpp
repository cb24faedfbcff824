#include "AdManager/MediationInstruction.h"

#include <re2/re2.h>

#include <map>
#include <vector>

#include "External/TBXML/XTBXML.h"
#include "Utilities/NumberText.h"
#include "Values/Text.h"

namespace tavo {

namespace {

using Attributes = std::map<std::string_view, std::string_view>;

void addAttributes(const XTBXMLElement& element, Attributes& attributes) {
  const XTBXMLAttribute* attribute = element.firstAttribute;
  for (; attribute != nullptr; attribute = attribute->next) {
    attributes[XTBXML::attributeName(attribute)] = XTBXML::attributeValue(attribute);
  }
}

// Depth first over a stack of its own: documents come from outside and may be deep.
Attributes gatherAttributes(const XTBXML& document) {
  Attributes attributes;
  std::vector<const XTBXMLElement*> open{document.rootXMLElement()};
  while (!open.empty()) {
    const XTBXMLElement* element = open.back();
    open.pop_back();
    if (element == nullptr) continue;
    if (XTBXML::elementName(element) == "ClientSideMediation") addAttributes(*element, attributes);
    open.push_back(element->nextSibling);
    open.push_back(element->firstChild);
  }
  return attributes;
}

std::string_view valueOf(const Attributes& attributes, std::string_view name) {
  const auto found = attributes.find(name);
  return found == attributes.end() ? std::string_view{} : found->second;
}

}  // namespace

bool holdsMediationInstruction(std::string_view text) {
  static const RE2 pattern{"(?i)(ClientSideMediation).*(placementId)", RE2::CannedOptions::Latin1};
  return RE2::PartialMatch({text.data(), text.size()}, pattern);
}

MediationInstruction readMediationInstruction(std::string_view text) {
  // The answer's size is bounded already, and reading it takes linear time and memory.
  const XTBXML document{text};
  const Attributes attributes = gatherAttributes(document);
  return {std::string{trimmed(valueOf(attributes, "placementId"))},
          {static_cast<double>(leadingInteger(valueOf(attributes, "width"))),
           static_cast<double>(leadingInteger(valueOf(attributes, "height")))}};
}

}  // namespace tavo
