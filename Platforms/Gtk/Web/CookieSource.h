#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Services/CookieStore.h"

namespace tavo::gtk {

// The application's cookie store as the web module sees it: enough to keep the engine's cookies and
// the store's the same. Main thread only.
class CookieSource {
 public:
  // Added (no `previous`), replaced, or removed (no `current`).
  using Changed = std::function<void(const std::optional<Cookie>& previous,
                                     const std::optional<Cookie>& current)>;

  virtual ~CookieSource() = default;

  [[nodiscard]] virtual std::vector<Cookie> all() const = 0;
  // What a page has set or removed. `changed` is not called for it.
  virtual void adopt(const Cookie& cookie) = 0;
  virtual void discard(const Cookie& cookie) = 0;
  // Calls `changed` for every later change that does not come from the engine; empty ends that.
  virtual void setListener(Changed changed) = 0;
};

}  // namespace tavo::gtk
