#include "Rules/Presence.h"

#include <utility>

#include "Services/Application.h"

namespace tavo {

Presence::Due Presence::windowsShown(bool any) {
  seen_ = seen_ || any;
  const bool wasInBackground = std::exchange(background_, seen_ && !any);
  if (background_ == wasInBackground) return std::nullopt;
  if (background_) return notifications::didEnterBackground;
  return locked_ ? std::nullopt : Due{notifications::willEnterForeground};
}

Presence::Due Presence::screenLocked(bool locked) {
  const bool wasLocked = std::exchange(locked_, locked);
  if (locked_ == wasLocked) return std::nullopt;
  if (locked_) return notifications::screenLocked;
  return background_ ? std::nullopt : Due{notifications::willEnterForeground};
}

}  // namespace tavo
