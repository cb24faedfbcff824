#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>
#include <memory>

#include "Readers.h"

namespace tavo::benchmarks {
namespace {

std::size_t lengthOf(const xmlChar* text) {
  return text != nullptr ? std::strlen(reinterpret_cast<const char*>(text)) : 0;
}

const xmlChar* toXml(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

struct Tree {
  using Node = const xmlNode*;
  static bool exists(Node node) { return node != nullptr; }
  static Node firstNamed(Node node, const char* name) {
    while (node != nullptr &&
           (node->type != XML_ELEMENT_NODE || xmlStrcmp(node->name, toXml(name)) != 0)) {
      node = node->next;
    }
    return node;
  }
  static Node child(Node node, const char* name) { return firstNamed(node->children, name); }
  static Node next(Node node, const char* name) { return firstNamed(node->next, name); }
  // Read where it stands: asking for a copy would measure the allocator.
  static std::size_t textLength(Node node) {
    std::size_t length = 0;
    for (Node at = node->children; at != nullptr; at = at->next) {
      length += at->type != XML_ELEMENT_NODE ? lengthOf(at->content) : 0;
    }
    return length;
  }
  static std::size_t valueLength(Node node, const char* name) {
    const xmlAttr* const attribute = xmlHasProp(node, toXml(name));
    return attribute != nullptr && attribute->children != nullptr
               ? lengthOf(attribute->children->content)
               : 0;
  }
};

}  // namespace

Facts readWithLibxml2(const std::string& text) {
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document{
      xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, kOptions),
      xmlFreeDoc};
  return walked(Tree{}, Tree::Node{xmlDocGetRootElement(document.get())});
}

}  // namespace tavo::benchmarks
