#include "External/TBXML/XTBXML.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Extensions/CompressedData.h"
#include "External/TBXML/XmlTokenizer.h"

namespace tavo {
namespace {

// Sizes are added up on the way to an allocation, so there is a bound for documents without one.
std::size_t largestDocument(const XmlReadLimits& limits) {
  constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max();
  return std::min(limits.bytes, largest);
}

}  // namespace

XTBXML::XTBXML(std::string_view document, const XmlReadLimits& limits)
    : XTBXML(document, limits, availableMarkupScans().fastest()) {}

XTBXML::XTBXML(std::string_view document, const XmlReadLimits& limits, MarkupScan scan)
    : tree_{document.size() <= largestDocument(limits) ? document.size() : 0} {
  if (document.size() > largestDocument(limits)) {
    tree_.passedLimit = true;
    return;
  }
  char* const text = tree_.text().get();
  std::copy(document.begin(), document.end(), text);
  std::fill_n(text + document.size(), XmlTree::textSlack, '\0');
  tokenizeXml(tree_, document.size(), limits, scan);
}

XTBXML XTBXML::XTBXMLWithXMLFile(const std::filesystem::path& file) {
  return XTBXML{dataWithUncompressedContentsOfFile(file).value_or(std::string{})};
}

XTBXML XTBXML::XTBXMLWithXMLFile(const std::filesystem::path& file,
                                 std::string_view fileExtension) {
  std::filesystem::path whole = file;
  whole += ".";
  whole += fileExtension;
  return XTBXMLWithXMLFile(whole);
}

XTBXML XTBXML::XTBXMLWithURL(const std::string& url, const Fetch& fetch) {
  return XTBXML{fetch(url)};
}

}  // namespace tavo
