#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "OnlineRequest/AdAddress.h"
#include "Services/UserDefaults.h"

namespace tavo {

// Which slots have shown an HTML ad before, across launches: one that has will most likely show the
// next one, so that the engine can start while the request is under way. Main thread only.
class HtmlSlots {
 public:
  // So many slots are remembered; the one that was seen longest ago is forgotten first.
  static constexpr std::size_t most = 64;

  explicit HtmlSlots(std::shared_ptr<UserDefaults> userDefaults)
      : userDefaults_{std::move(userDefaults)} {}

  [[nodiscard]] static std::string nameOf(const AdAddress& address);

  [[nodiscard]] bool contains(std::string_view slot) const;
  // Writes to disk only if the slot was not known.
  void add(std::string_view slot);

 private:
  [[nodiscard]] std::deque<std::string> remembered() const;

  const std::shared_ptr<UserDefaults> userDefaults_;
};

}  // namespace tavo
