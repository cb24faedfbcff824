#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Inspection.h>

namespace tavo {

// The inspection as one slot's objects are given it. Ask `isOn` before making what is to be told.
struct SlotInspection {
  std::shared_ptr<Inspection> inspection{};  // null: nobody can look
  const void* slot = nullptr;

  [[nodiscard]] bool isOn() const { return inspection && inspection->isOn(); }
  void tell(InspectionKind kind, std::string text, std::vector<InspectionField> fields = {}) const {
    if (inspection) inspection->tell(kind, slot, std::move(text), std::move(fields));
  }
};

}  // namespace tavo
