#pragma once

#include <functional>

#include <tavo/Export.h>
#include <tavo/Geometry.h>

namespace tavo {

class View;

// Recognises one tap on the view that it was added to. Recognisers of several views may all take
// the same tap; none keeps it from the view below.
struct TapRecognizer {
  enum class State { possible = 0, began = 1, changed = 2, ended = 3, cancelled = 4, failed = 5 };

  // Asked with the view that was touched; an empty one takes every touch.
  std::function<bool(View& touched)> shouldReceiveTouch{};
  // Called when the tap has ended or was cancelled.
  std::function<void(TapRecognizer& recognizer)> action{};
  State state = State::possible;
};

// Delivers one finished tap at `point` (coordinates of `root`): a button that was hit is pressed;
// recognisers are told from the touched view upwards. Returns the touched view, or null.
TAVO_EXPORT View* deliverTap(View& root, Point point);

// Tells the recognisers from `touched` upwards, without pressing anything: for native widgets that
// handle their own input.
TAVO_EXPORT void recognizeTap(View& touched);

}  // namespace tavo
