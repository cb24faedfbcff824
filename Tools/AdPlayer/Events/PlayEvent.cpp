#include "AdPlayer/Events/PlayEvent.h"

#include <algorithm>
#include <cstdio>

#include "AdServer/JsonText.h"

namespace tavo::adplayer {

std::string_view PlayEvent::field(std::string_view name) const {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const auto& field) { return field.name == name; });
  return found == fields.end() ? std::string_view{} : std::string_view{found->value};
}

std::string PlayEvent::toJson() const {
  using adserver::jsonString;
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.3f", time.count());
  std::string line = "{\"time\": ";
  line += seconds;
  line += ", \"kind\": " + jsonString(kind) + ", \"text\": " + jsonString(text) + ", \"fields\": [";
  const char* gap = "";
  for (const auto& field : fields) {
    line += gap + ("[" + jsonString(field.name)) + ", " + jsonString(field.value) + "]";
    gap = ", ";
  }
  return line + "]}";
}

}  // namespace tavo::adplayer
