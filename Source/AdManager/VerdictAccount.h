#pragma once

#include <string>
#include <vector>

#include <tavo/Inspection.h>

#include "AdInfo/XAdInfo.h"
#include "AdManager/AdVerdict.h"

namespace tavo {

// A verdict in words, for the inspection.
struct VerdictAccount {
  std::string text;
  // "verdict", "route", "why", and a "dropped" for each thing in the answer that has no part in it.
  std::vector<InspectionField> fields;
};

[[nodiscard]] VerdictAccount accountOf(const XAdInfo& answer, const SlotFacts& slot,
                                       const Verdict& verdict, int answerDepth);

}  // namespace tavo
