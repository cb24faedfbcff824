#include <tinyxml2.h>

#include <cstring>

#include "Readers.h"

namespace tavo::benchmarks {
namespace {

std::size_t lengthOf(const char* text) { return text != nullptr ? std::strlen(text) : 0; }

struct Tree {
  using Node = const tinyxml2::XMLElement*;
  static bool exists(Node node) { return node != nullptr; }
  static Node child(Node node, const char* name) { return node->FirstChildElement(name); }
  static Node next(Node node, const char* name) { return node->NextSiblingElement(name); }
  static std::size_t textLength(Node node) { return lengthOf(node->GetText()); }
  static std::size_t valueLength(Node node, const char* name) {
    return lengthOf(node->Attribute(name));
  }
};

}  // namespace

Facts readWithTinyXml2(const std::string& text) {
  tinyxml2::XMLDocument document;
  document.Parse(text.data(), text.size());
  return walked(Tree{}, Tree::Node{document.FirstChildElement("VAST")});
}

}  // namespace tavo::benchmarks
