#include <cstring>
#include <rapidxml/rapidxml.hpp>

#include "Readers.h"

namespace tavo::benchmarks {
namespace {

struct Tree {
  using Node = rapidxml::xml_node<>*;
  static bool exists(Node node) { return node != nullptr; }
  static Node child(Node node, const char* name) { return node->first_node(name); }
  static Node next(Node node, const char* name) { return node->next_sibling(name); }
  // CDATA sections are nodes of their own here.
  static std::size_t textLength(Node node) {
    if (node->value_size() != 0) {
      return node->value_size();
    }
    const Node section = node->first_node();
    return section != nullptr ? section->value_size() : 0;
  }
  static std::size_t valueLength(Node node, const char* name) {
    const auto* const attribute = node->first_attribute(name);
    return attribute != nullptr ? attribute->value_size() : 0;
  }
};

}  // namespace

Facts readWithRapidXml(const std::string& text, std::string& buffer) {
  std::memcpy(buffer.data(), text.data(), text.size());
  buffer[text.size()] = '\0';
  rapidxml::xml_document<> document;
  document.parse<rapidxml::parse_default>(buffer.data());
  return walked(Tree{}, document.first_node("VAST"));
}

}  // namespace tavo::benchmarks
