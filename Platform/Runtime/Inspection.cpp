#include <algorithm>
#include <array>

#include <tavo/Inspection.h>
#include <tavo/Runtime.h>

#include "Runtime/Environment.h"
#include "Values/Text.h"

namespace tavo {

namespace {

void cut(std::string& text) {
  if (text.size() <= Inspection::longestValue) return;
  const std::size_t length = text.size();
  text.resize(Inspection::longestValue);
  text = validUtf8(text) + " ... (" + std::to_string(length) + " bytes in all)";
}

}  // namespace

std::string_view nameOf(InspectionKind kind) {
  static constexpr std::array<std::string_view, 15> names{
      "request",  "answer",     "classified", "wrapper", "media",
      "command",  "statement",  "state",      "console", "scriptError",
      "resource", "navigation", "process",    "pause",   "probe"};
  return names.at(static_cast<std::size_t>(kind));
}

std::string_view InspectionEvent::field(std::string_view name) const {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const auto& field) { return field.name == name; });
  return found == fields.end() ? std::string_view{} : std::string_view{found->value};
}

Inspection& Inspection::sharedInstance() { return *Runtime::current().platform().inspection; }

Inspection::Inspection(std::function<Seconds()> clock) : clock_{std::move(clock)} {}

void Inspection::tell(InspectionKind kind, const void* slot, std::string text,
                      std::vector<InspectionField> fields) {
  if (!isOn()) return;
  InspectionEvent event{clock_(), kind, slot, std::move(text), std::move(fields)};
  cut(event.text);
  for (auto& field : event.fields) cut(field.value);
  observer.tell(&InspectionObserver::inspectionDidSee, event);
}

void Inspection::enter(const std::weak_ptr<InspectedPage>& page) {
  std::erase_if(pages_, [](const auto& one) { return one.expired(); });
  pages_.push_back(page);
}

bool Inspection::openPageTools() {
  for (auto page = pages_.rbegin(); page != pages_.rend(); ++page) {
    if (const auto there = page->lock()) {
      there->openTools();
      return true;
    }
  }
  return false;
}

}  // namespace tavo
