#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "External/TBXML/NameMatch.h"
#include "External/TBXML/XTBXMLElement.h"
#include "External/TBXML/XmlReadLimits.h"
#include "External/TBXML/XmlTree.h"

namespace tavo {

// A small, fast, non-validating XML reader. A document is read whole, in one pass over one copy of
// its bytes, and then answers questions about its tree. What cannot be made sense of is no error:
// the tree just holds fewer elements, or none.
//
// Records that a document hands out must not be used after it is gone. Names and texts point into
// its copy of the bytes, which whoever wants to keep them may keep without the records: see text().
// A document is neither copied nor moved. Any thread may use one, one thread at a time; reading
// from several is safe.
class XTBXML {
 public:
  // Fetches the bytes behind a URL and waits for them; empty when they cannot be had.
  using Fetch = std::function<std::string(const std::string& url)>;

  // Reads UTF-8 text or raw bytes; a byte-order mark is passed over. Text beyond a limit is not
  // read, see passedLimit().
  explicit XTBXML(std::string_view document, const XmlReadLimits& limits = {});
  // The same with a form of the markup scan of the caller's choice, for tests and benchmarks.
  XTBXML(std::string_view document, const XmlReadLimits& limits, MarkupScan scan);
  ~XTBXML() = default;

  XTBXML(const XTBXML&) = delete;
  XTBXML& operator=(const XTBXML&) = delete;

  [[nodiscard]] static XTBXML XTBXMLWithXMLString(std::string_view text) { return XTBXML{text}; }
  [[nodiscard]] static XTBXML XTBXMLWithXMLData(std::string_view bytes) { return XTBXML{bytes}; }

  // Reads a resource file, which may be gzip compressed. A file that cannot be read gives a
  // document without a root.
  [[nodiscard]] static XTBXML XTBXMLWithXMLFile(const std::filesystem::path& file);
  [[nodiscard]] static XTBXML XTBXMLWithXMLFile(const std::filesystem::path& file,
                                                std::string_view fileExtension);

  // Reads what `fetch` gives for the URL.
  [[nodiscard]] static XTBXML XTBXMLWithURL(const std::string& url, const Fetch& fetch);

  // The first element of the document, or none.
  [[nodiscard]] XTBXMLElement* rootXMLElement() const { return tree_.root; }

  // Whether reading stopped early because the document passed one of its limits.
  [[nodiscard]] bool passedLimit() const { return tree_.passedLimit; }

  // The document's copy of its bytes, which all names and texts point into.
  [[nodiscard]] std::shared_ptr<const char[]> text() const { return tree_.text(); }

  // The name, the text and the value as they stand in the document; empty for no record.
  [[nodiscard]] static std::string_view elementName(const XTBXMLElement* element) {
    return element != nullptr ? element->name : std::string_view{};
  }
  [[nodiscard]] static std::string_view textForElement(const XTBXMLElement* element) {
    return element != nullptr ? element->text : std::string_view{};
  }
  [[nodiscard]] static std::string_view attributeName(const XTBXMLAttribute* attribute) {
    return attribute != nullptr ? attribute->name : std::string_view{};
  }
  [[nodiscard]] static std::string_view attributeValue(const XTBXMLAttribute* attribute) {
    return attribute != nullptr ? attribute->value : std::string_view{};
  }

  // The value of the first attribute of exactly this name; none when the element has none such.
  [[nodiscard]] static std::optional<std::string_view> valueOfAttributeNamed(
      std::string_view name, const XTBXMLElement* element) {
    const XTBXMLAttribute* at = element != nullptr ? element->firstAttribute : nullptr;
    while (at != nullptr && !isSameName(at->name, name)) {
      at = at->next;
    }
    return at != nullptr ? std::optional{at->value} : std::nullopt;
  }

  // The first child, in document order, of exactly this name, or none.
  [[nodiscard]] static XTBXMLElement* childElementNamed(std::string_view name,
                                                        const XTBXMLElement* parentElement) {
    return firstNamed(name, parentElement != nullptr ? parentElement->firstChild : nullptr);
  }

  // The first later sibling of exactly this name, or none.
  [[nodiscard]] static XTBXMLElement* nextSiblingNamed(std::string_view name,
                                                       const XTBXMLElement* searchFromElement) {
    return firstNamed(name,
                      searchFromElement != nullptr ? searchFromElement->nextSibling : nullptr);
  }

 private:
  [[nodiscard]] static XTBXMLElement* firstNamed(std::string_view name, XTBXMLElement* element) {
    while (element != nullptr && !isSameName(element->name, name)) {
      element = element->nextSibling;
    }
    return element;
  }

  XmlTree tree_;
};

}  // namespace tavo
