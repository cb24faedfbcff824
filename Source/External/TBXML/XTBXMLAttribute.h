#pragma once

#include <string_view>

namespace tavo {

// One attribute of an element. The texts point into the document's copy of the input.
struct XTBXMLAttribute {
  std::string_view name = {};
  std::string_view value = {};      // as written: references such as &amp; are not decoded
  XTBXMLAttribute* next = nullptr;  // the next attribute of the same element
};

}  // namespace tavo
