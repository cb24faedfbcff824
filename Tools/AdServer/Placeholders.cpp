#include "AdServer/Placeholders.h"

namespace tavo::adserver {

std::string fillPlaceholders(std::string_view text, const ValueOfName& valueOf) {
  constexpr std::string_view opening = "${";
  std::string filled;
  while (true) {
    const auto start = text.find(opening);
    const auto end = start == text.npos ? text.npos : text.find('}', start);
    if (end == text.npos) {
      return filled.append(text);
    }
    const auto nameStart = start + opening.size();
    const auto value = valueOf(text.substr(nameStart, end - nameStart));
    filled.append(text.substr(0, start));
    // Going on after the opening alone finds a placeholder that stands inside an unknown one.
    filled.append(value ? std::string_view{*value} : opening);
    text.remove_prefix(value ? end + 1 : nameStart);
  }
}

std::string fillServerAndCampaign(std::string_view text, std::string_view server,
                                  std::string_view campaign, int hop) {
  return fillPlaceholders(text, [&](std::string_view name) -> std::optional<std::string> {
    if (name == "server") return std::string{server};
    if (name == "campaign") return std::string{campaign};
    if (name == "hop") return std::to_string(hop + 1);
    return std::nullopt;
  });
}

}  // namespace tavo::adserver
