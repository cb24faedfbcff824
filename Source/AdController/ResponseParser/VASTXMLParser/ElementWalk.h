#pragma once

#include <string_view>
#include <vector>

#include "External/TBXML/XTBXML.h"
#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// Small steps that every walk over a document is made of.

[[nodiscard]] inline XTBXMLElement* childOf(const XTBXMLElement* parent, std::string_view name) {
  return XTBXML::childElementNamed(name, parent);
}

[[nodiscard]] inline std::string_view textOf(const XTBXMLElement* element) {
  return XTBXML::textForElement(element);
}

// Calls `visit` with `first` and each later sibling of this name.
template <typename Visit>
void forThisAndSiblings(XTBXMLElement* first, std::string_view name, const Visit& visit) {
  for (XTBXMLElement* at = first; at != nullptr; at = XTBXML::nextSiblingNamed(name, at)) {
    visit(at);
  }
}

// Calls `visit` with each child of this name.
template <typename Visit>
void forChildren(const XTBXMLElement* parent, std::string_view name, const Visit& visit) {
  forThisAndSiblings(childOf(parent, name), name, visit);
}

[[nodiscard]] inline std::size_t countOfChildren(const XTBXMLElement* parent,
                                                 std::string_view name) {
  std::size_t count = 0;
  forChildren(parent, name, [&count](XTBXMLElement*) { ++count; });
  return count;
}

// The texts of all children of this name.
[[nodiscard]] inline std::vector<std::string_view> textsOf(const XTBXMLElement* parent,
                                                           std::string_view name) {
  std::vector<std::string_view> texts;
  texts.reserve(countOfChildren(parent, name));
  forChildren(parent, name, [&texts](XTBXMLElement* child) { texts.push_back(textOf(child)); });
  return texts;
}

// Fills the field with the text of the first child of this name; without one it stays as it is.
inline void readText(OptionalText& field, const XTBXMLElement* parent, std::string_view name) {
  if (const XTBXMLElement* const child = childOf(parent, name); child != nullptr) {
    field = textOf(child);
  }
}

}  // namespace tavo
