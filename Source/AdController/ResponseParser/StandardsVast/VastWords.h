#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/Url.h>
#include <tavo/VastTracking.h>

#include "AdController/ResponseParser/VASTXMLParser/ElementWalk.h"
#include "External/TBXML/XTBXML.h"

namespace tavo {

// The addresses of one ad as they are read: absolute, and no more than a number of them, so that an
// ad of ten thousand trackers costs what one of a few hundred costs.
class VastWords {
 public:
  VastWords(Url base, std::size_t addresses) : base_{std::move(base)}, left_{addresses} {}

  // The element's address; empty without one.
  [[nodiscard]] std::string address(const XTBXMLElement* element) const;
  // The addresses of all children of this name that have one.
  [[nodiscard]] std::vector<std::string> addresses(const XTBXMLElement* parent,
                                                   std::string_view name);
  // The Tracking children of `parent`.
  [[nodiscard]] std::vector<VastTracking> tracking(const XTBXMLElement* parent);

 private:
  [[nodiscard]] bool take();

  const Url base_;
  std::size_t left_;
};

}  // namespace tavo
