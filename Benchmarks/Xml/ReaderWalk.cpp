#include <string_view>

#include "External/TBXML/XTBXML.h"
#include "Readers.h"

namespace tavo::benchmarks {
namespace {

struct Tree {
  using Node = const XTBXMLElement*;
  static bool exists(Node node) { return node != nullptr; }
  static Node child(Node node, std::string_view name) {
    return XTBXML::childElementNamed(name, node);
  }
  static Node next(Node node, std::string_view name) {
    return XTBXML::nextSiblingNamed(name, node);
  }
  static std::size_t textLength(Node node) { return XTBXML::textForElement(node).size(); }
  static std::size_t valueLength(Node node, std::string_view name) {
    return XTBXML::valueOfAttributeNamed(name, node).value_or("").size();
  }
};

}  // namespace

Facts readWithReader(const std::string& text, MarkupScan scan) {
  const XTBXML document{text, {}, scan};
  return walked(Tree{}, Tree::Node{document.rootXMLElement()});
}

}  // namespace tavo::benchmarks
