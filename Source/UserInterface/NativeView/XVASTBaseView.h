#pragma once

#include <tavo/WebView.h>

namespace tavo {

// What a platform's page is built on when a video ad shows it. It adds nothing to a page yet.
class XVASTBaseView : public WebView {
 protected:
  explicit XVASTBaseView(const Rect& frame) : WebView{frame} {}
};

}  // namespace tavo
