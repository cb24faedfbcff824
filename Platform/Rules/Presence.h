#pragma once

#include <optional>
#include <string_view>

namespace tavo {

// Whether a person has the application before them: what counts as foreground, background and lock.
// It is told facts, as often as a platform likes, and answers with the notification of Application
// that is due now, if any.
class Presence {
 public:
  using Due = std::optional<std::string_view>;

  // Some window of the host's is on the screen, or none is. An application that has not shown one
  // yet is no more in the background than one that is starting.
  [[nodiscard]] Due windowsShown(bool any);

  // The screen is covered until the person signs in again. They come back to an application whose
  // windows were there all the time, which is its return to the foreground.
  [[nodiscard]] Due screenLocked(bool locked);

 private:
  bool seen_ = false;
  bool background_ = false;
  bool locked_ = false;
};

}  // namespace tavo
