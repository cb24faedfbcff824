#include "AdManager/HtmlSlots.h"

#include <algorithm>

namespace tavo {
namespace {

constexpr std::string_view slotsKey = "tavo.htmlSlots";  // one name a line, the newest last
constexpr std::size_t longestName = 512;

}  // namespace

std::string HtmlSlots::nameOf(const AdAddress& address) {
  std::string name = address.domainName + "/" + address.pageName + "@" + address.adPosition;
  std::replace(name.begin(), name.end(), '\n', ' ');
  name.resize(std::min(name.size(), longestName));
  return name;
}

std::deque<std::string> HtmlSlots::remembered() const {
  const std::string text = userDefaults_->value(slotsKey).value_or("");
  std::deque<std::string> slots;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    slots.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return slots;
}

bool HtmlSlots::contains(std::string_view slot) const {
  const auto slots = remembered();
  return std::find(slots.begin(), slots.end(), slot) != slots.end();
}

void HtmlSlots::add(std::string_view slot) {
  auto slots = remembered();
  if (std::find(slots.begin(), slots.end(), slot) != slots.end()) return;
  slots.emplace_back(slot);
  while (slots.size() > most) slots.pop_front();
  std::string text;
  for (const auto& name : slots) text.append(name).append("\n");
  userDefaults_->setValue(slotsKey, text);
  userDefaults_->synchronize();
}

}  // namespace tavo
