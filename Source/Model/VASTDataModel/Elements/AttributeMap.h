#pragma once

#include <string_view>

#include "External/TBXML/NameMatch.h"
#include "External/TBXML/XTBXMLAttribute.h"
#include "Model/VASTDataModel/Elements/ModelText.h"

namespace tavo {

// The attributes of one element, name to value. A name that occurs again replaces the earlier
// value. It is a view of the document's own records and lives as long as they do; the values are
// texts of the document and may live longer.
class AttributeMap {
 public:
  AttributeMap() = default;
  // Of the element whose first attribute this is; null: there are none.
  explicit AttributeMap(const XTBXMLAttribute* first) : first_{first} {}

  [[nodiscard]] bool empty() const { return first_ == nullptr; }

  // The value under `name`, or none.
  [[nodiscard]] OptionalText operator[](std::string_view name) const {
    OptionalText found;
    forEach([&found, name](std::string_view other, std::string_view value) {
      if (isSameName(other, name)) found = value;
    });
    return found;
  }

  // Visits names and values in the document's order, replaced values included.
  template <typename Visit>
  void forEach(const Visit& visit) const {
    for (const auto* at = first_; at != nullptr; at = at->next) visit(at->name, at->value);
  }

 private:
  const XTBXMLAttribute* first_ = nullptr;
};

}  // namespace tavo
