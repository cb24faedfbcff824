#include "Rules/KeyboardReach.h"

#include <tavo/Button.h>
#include <tavo/WebView.h>

namespace tavo {

bool isReachedByKeyboard(const View& view) {
  const bool hasWaysOfItsOwn = dynamic_cast<const Button*>(&view) != nullptr ||
                               dynamic_cast<const WebView*>(&view) != nullptr;
  return !hasWaysOfItsOwn && view.isUserInteractionEnabled() && !view.tapRecognizers().empty() &&
         !view.accessibilityLabel().empty();
}

}  // namespace tavo
