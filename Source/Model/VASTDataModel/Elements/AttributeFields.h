#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "External/TBXML/NameTable.h"
#include "Model/VASTDataModel/Elements/AttributeMap.h"

namespace tavo {

// Which attributes of an element fill which fields of a record of the model.
template <typename Record, std::size_t count>
class AttributeFields {
 public:
  using Field = OptionalText Record::*;

  consteval explicit AttributeFields(const NameEntry<Field> (&fields)[count]) : fields_{fields} {}

  // A field whose attribute is absent becomes none.
  void fill(Record& record, const AttributeMap& attributes) const {
    for (const auto& [name, field] : fields_.entries()) record.*field = std::nullopt;
    attributes.forEach([this, &record](std::string_view name, std::string_view value) {
      if (const Field* const field = fields_.find(name)) record.** field = value;
    });
  }

 private:
  NameTable<Field, count> fields_;
};

template <typename Record, std::size_t count>
[[nodiscard]] consteval AttributeFields<Record, count> attributeFields(
    const NameEntry<OptionalText Record::*> (&fields)[count]) {
  return AttributeFields<Record, count>{fields};
}

}  // namespace tavo
