#pragma once

#include <gtkmm.h>

#include <functional>
#include <string>

#include <tavo/Geometry.h>

#include "AdPlayer/Stage/Phone.h"
#include "AdPlayer/Stage/Session.h"

namespace tavo::adplayer {

// Touches the phone as a person does, by the pointer of an X screen. Only for a screen that nobody
// else uses. Main thread only.
class Fingers {
 public:
  Fingers();

  [[nodiscard]] bool canTouch() const { return display_ != nullptr; }
  // A tap at a point of the phone's screen, counted below the status bar.
  void tap(Phone& phone, Point point);
  // Finds the middle of the first element that `selector` means in the creative's page, in points
  // of the phone's screen; none when there is no such element, or it has no size, or it is not
  // looked for the first time and the page has felt a tap since.
  static void find(Session& session, const std::string& selector, bool isFirst,
                   const std::function<void(std::optional<Point>)>& found);

  // Whether the page has felt the tap since `find`; yes where there is no page any more.
  static void ask(Session& session, const std::function<void(bool)>& landed);

 private:
  using Move = int (*)(void*, int, int, int, unsigned long);
  using Button = int (*)(void*, unsigned, int, unsigned long);
  using Flush = int (*)(void*);
  Move move_ = nullptr;
  Button button_ = nullptr;
  Flush flush_ = nullptr;
  void* display_ = nullptr;
};

}  // namespace tavo::adplayer
