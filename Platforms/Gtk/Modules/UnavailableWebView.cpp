#include "Gtk/Modules/UnavailableWebView.h"

namespace tavo::gtk {

UnavailableWebView::UnavailableWebView(const Rect& frame, std::shared_ptr<RunLoop> runLoop)
    : WebView{frame}, runLoop_{std::move(runLoop)} {}

void UnavailableWebView::loadHtml(const std::string& /*html*/, const Url& /*baseUrl*/) {
  failLoad();
}

void UnavailableWebView::loadUrl(const Url& /*url*/) { failLoad(); }

void UnavailableWebView::evaluate(const std::string& /*script*/,
                                  std::function<void(const std::string&)> completion) {
  if (completion) runLoop_->post([completion = std::move(completion)] { completion({}); });
}

void UnavailableWebView::failLoad() {
  runLoop_->post([weak = weak_from_this()] {
    const auto self = std::static_pointer_cast<UnavailableWebView>(weak.lock());
    if (!self) return;
    if (const auto client = self->client_.lock()) {
      client->webViewDidFailLoad(*self, {std::string{webErrorDomain}, webEngineUnavailableError,
                                         "No web engine can run here."});
    }
  });
}

}  // namespace tavo::gtk
