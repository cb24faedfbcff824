#pragma once

#include <string>
#include <string_view>

namespace tavo {

// Which slots have shown an HTML ad before, across launches: one that has will most likely show the
// next one, so that the engine can start while the request is under way. Main thread only.
class HtmlSlots {
 public:
  // So many slots are remembered; the one that was seen longest ago is forgotten first.
  static constexpr std::size_t most = 64;

  [[nodiscard]] static std::string nameOf(std::string_view domainName, std::string_view pageName,
                                          std::string_view adPosition);

  [[nodiscard]] static bool contains(std::string_view slot);
  // Writes to disk only if the slot was not known.
  static void add(std::string_view slot);
};

}  // namespace tavo
