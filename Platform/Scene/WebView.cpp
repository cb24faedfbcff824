#include <tavo/WebView.h>

namespace tavo {

void WebView::setAtRest(bool rests) { change(atRest_, rests); }

}  // namespace tavo
