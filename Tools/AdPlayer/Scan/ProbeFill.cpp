#include <cstdint>

#include "AdPlayer/Scan/Probe.h"
#include "AdServer/JsonText.h"

namespace tavo::adplayer {

namespace {

void fill(std::string& text, std::string_view name, const std::string& value) {
  const auto at = text.find(" = " + std::string{name});
  if (at != text.npos) text.replace(at + 3, name.size(), value);
}

}  // namespace

std::string probe(const Pretence& pretence) {
  std::string text{probeText()};
  fill(text, "CLOCK", std::to_string(static_cast<std::int64_t>(pretence.clock.count() * 1'000)));
  fill(text, "LANGUAGE", adserver::jsonString(pretence.language));
  return text;
}

}  // namespace tavo::adplayer
