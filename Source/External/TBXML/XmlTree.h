#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "External/TBXML/MarkupScan.h"
#include "External/TBXML/RecordPool.h"
#include "External/TBXML/XTBXMLElement.h"

namespace tavo {

// A document's copy of its text and the records that point into it. The text is an allocation of
// its own, which may outlive the tree. The first blocks of records are another one, as many as a
// document of this size usually needs.
class XmlTree {
 public:
  explicit XmlTree(std::size_t textSize)
      : XmlTree(textSize, textSize / bytesForElement + 1, textSize / bytesForAttribute + 1) {}

  // Room for the text and textSlack bytes behind it.
  [[nodiscard]] const std::shared_ptr<char[]>& text() const { return text_; }

  // Fresh records of the document.
  XTBXMLElement* nextAvailableElement(std::string_view name) { return elements_.next(name); }
  XTBXMLAttribute* nextAvailableAttribute(std::string_view name, std::string_view value) {
    return attributes_.next(name, value);
  }

  // Zero bytes that the tokenizer wants to be able to read behind a text.
  static constexpr std::size_t textSlack = 2 * markupBlock;

 private:
  static constexpr std::size_t bytesForElement = 64;
  static constexpr std::size_t bytesForAttribute = 40;

  XmlTree(std::size_t textSize, std::size_t elementCount, std::size_t attributeCount)
      : text_(std::make_shared_for_overwrite<char[]>(textSize + textSlack)),
        memory_(std::make_unique_for_overwrite<std::byte[]>(
            elementCount * sizeof(XTBXMLElement) + attributeCount * sizeof(XTBXMLAttribute))),
        elements_(memory_.get(), elementCount),
        attributes_(memory_.get() + elementCount * sizeof(XTBXMLElement), attributeCount) {}

  static_assert(alignof(XTBXMLElement) % alignof(XTBXMLAttribute) == 0);
  static_assert(alignof(XTBXMLElement) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

  std::shared_ptr<char[]> text_;
  std::unique_ptr<std::byte[]> memory_;
  RecordPool<XTBXMLElement> elements_;
  RecordPool<XTBXMLAttribute> attributes_;

 public:
  XTBXMLElement* root = nullptr;
  bool passedLimit = false;  // the text was not read to its end
};

}  // namespace tavo
