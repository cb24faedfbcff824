#include <utility>

#include <tavo/WebView.h>

namespace tavo {

void WebView::setAtRest(bool rests) {
  if (std::exchange(atRest_, rests) != rests) changed();
}

}  // namespace tavo
