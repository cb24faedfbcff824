#include "AdController/ResponseParser/StandardsVast/VastWords.h"

#include "AdController/ResponseParser/StandardsVast/VastText.h"

namespace tavo {

bool VastWords::take() {
  if (left_ == 0) return false;
  --left_;
  return true;
}

std::string VastWords::address(const XTBXMLElement* element) const {
  return absoluteAddress(base_, plainText(element));
}

std::vector<std::string> VastWords::addresses(const XTBXMLElement* parent, std::string_view name) {
  std::vector<std::string> found;
  forChildren(parent, name, [&](const XTBXMLElement* child) {
    std::string text = address(child);
    if (!text.empty() && take()) found.push_back(std::move(text));
  });
  return found;
}

// An offset that can never be reached is an event that never comes.
std::vector<VastTracking> VastWords::tracking(const XTBXMLElement* parent) {
  std::vector<VastTracking> found;
  forChildren(parent, "Tracking", [&](const XTBXMLElement* child) {
    VastTracking one{attributeText(child, "event"), {}, address(child)};
    if (one.url.empty() || one.event.empty()) return;
    one.offset = vastOffset(attributeText(child, "offset"));
    if (one.event == "progress" && !one.offset) return;
    if (take()) found.push_back(std::move(one));
  });
  return found;
}

}  // namespace tavo
