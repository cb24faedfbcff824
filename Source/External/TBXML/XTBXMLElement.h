#pragma once

#include <string_view>

#include "External/TBXML/XTBXMLAttribute.h"

namespace tavo {

// One element of a document. The texts point into the document's copy of the input, the links to
// other records of the same document, which live as long as it does.
struct XTBXMLElement {
  std::string_view name = {};
  std::string_view text = {};  // what follows the start tag, up to the next markup
  XTBXMLAttribute* firstAttribute = nullptr;
  XTBXMLElement* parentElement = nullptr;
  XTBXMLElement* firstChild = nullptr;
  XTBXMLElement* currentChild = nullptr;  // the last child appended so far
  XTBXMLElement* nextSibling = nullptr;
  XTBXMLElement* previousSibling = nullptr;
  bool fromSection = false;  // the text, or a part of it, stood in a CDATA section
};

}  // namespace tavo
