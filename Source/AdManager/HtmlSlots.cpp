#include "AdManager/HtmlSlots.h"

#include <algorithm>
#include <deque>

#include <tavo/Runtime.h>

#include "Services/UserDefaults.h"

namespace tavo {
namespace {

constexpr std::string_view slotsKey = "tavo.htmlSlots";  // one name a line, the newest last
constexpr std::size_t longestName = 512;

std::deque<std::string> rememberedSlots() {
  const std::string text = Runtime::current().platform().userDefaults->value(slotsKey).value_or("");
  std::deque<std::string> slots;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    slots.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return slots;
}

}  // namespace

std::string HtmlSlots::nameOf(std::string_view domainName, std::string_view pageName,
                              std::string_view adPosition) {
  std::string name{domainName};
  name.append("/").append(pageName).append("@").append(adPosition);
  std::replace(name.begin(), name.end(), '\n', ' ');
  name.resize(std::min(name.size(), longestName));
  return name;
}

bool HtmlSlots::contains(std::string_view slot) {
  const auto slots = rememberedSlots();
  return std::find(slots.begin(), slots.end(), slot) != slots.end();
}

void HtmlSlots::add(std::string_view slot) {
  auto slots = rememberedSlots();
  if (std::find(slots.begin(), slots.end(), slot) != slots.end()) return;
  slots.emplace_back(slot);
  while (slots.size() > most) slots.pop_front();
  std::string text;
  for (const auto& name : slots) text.append(name).append("\n");
  auto& defaults = *Runtime::current().platform().userDefaults;
  defaults.setValue(slotsKey, text);
  defaults.synchronize();
}

}  // namespace tavo
