#include <cstring>
#include <pugixml.hpp>

#include "Readers.h"

namespace tavo::benchmarks {
namespace {

struct Tree {
  using Node = pugi::xml_node;
  static bool exists(Node node) { return !node.empty(); }
  static Node child(Node node, const char* name) { return node.child(name); }
  static Node next(Node node, const char* name) { return node.next_sibling(name); }
  static std::size_t textLength(Node node) { return std::strlen(node.child_value()); }
  static std::size_t valueLength(Node node, const char* name) {
    return std::strlen(node.attribute(name).value());
  }
};

}  // namespace

Facts readWithPugixmlInPlace(const std::string& text, std::string& buffer) {
  std::memcpy(buffer.data(), text.data(), text.size());
  pugi::xml_document document;
  document.load_buffer_inplace(buffer.data(), text.size(), pugi::parse_default,
                               pugi::encoding_utf8);
  return walked(Tree{}, document.child("VAST"));
}

Facts readWithPugixmlCopying(const std::string& text) {
  pugi::xml_document document;
  document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
  return walked(Tree{}, document.child("VAST"));
}

}  // namespace tavo::benchmarks
