#pragma once

#include <tavo/Url.h>

namespace tavo::gtk {

// The applications beside this one that open URLs. On an open desktop it is known which there are.
// An application in a sandbox sees none of them: there the portal of the desktop opens what it can,
// and asks the person where there is a choice. Main thread only.
class UrlHandlers {
 public:
  enum class Surroundings { desktop, sandbox };

  explicit UrlHandlers(Surroundings surroundings) : surroundings_{surroundings} {}

  // Where this process runs: in a Flatpak or a snap, or as if, by GTK_USE_PORTAL=1.
  [[nodiscard]] static Surroundings surroundings();

  // In a sandbox true for every scheme but that of files, whose names mean nothing outside.
  [[nodiscard]] bool canOpen(const Url& url) const;
  // False when nothing was tried. What becomes of it in the other application is not known.
  [[nodiscard]] bool open(const Url& url) const;

 private:
  Surroundings surroundings_;
};

}  // namespace tavo::gtk
