#pragma once

#include <tavo/View.h>

namespace tavo {

// Whether the keyboard reaches the view, and Enter and the space bar are taps on it: one that
// listens for taps, takes input and has a name to be announced by. Buttons and pages have ways of
// their own.
[[nodiscard]] bool isReachedByKeyboard(const View& view);

}  // namespace tavo
