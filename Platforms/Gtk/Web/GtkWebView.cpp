#include "Gtk/Web/GtkWebView.h"

#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Web/PageErrors.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

// A page may take its base from the network only: with a file's, it could look for files.
Url acceptableBase(const Url& base) { return base.isHttp() ? base : Url{}; }

}  // namespace

GtkWebView::GtkWebView(const Rect& frame, const WebViewOptions& options,
                       std::shared_ptr<WebEngine> engine, std::shared_ptr<WebViewPool> pool)
    : WebView{frame},
      options_{options},
      engine_{std::move(engine)},
      pool_{std::move(pool)},
      native_{pool_->acquire(options)},
      budget_{pool_->reloadBudget(options.owner)} {
  native_->take(*this, options.owner);
  native_->resize(this->frame().size());
}

GtkWebView::~GtkWebView() { pool_->giveBack(std::exchange(native_, nullptr), options_); }

void GtkWebView::loadHtml(const std::string& html, const Url& baseUrl) {
  const Url base = acceptableBase(baseUrl);
  if (beginLoad()) native_->loadHtml(html, base);
}

void GtkWebView::load(const Url& url, CachePolicy policy) {
  if (!url.isHttp() && url.text() != blankPage) {
    return failLater(cannotShowError("Only http, https and about:blank can be loaded."));
  }
  if (beginLoad()) native_->loadUrl(url, policy);
}

bool GtkWebView::beginLoad() {
  if (!budget_->mayLoad(engine_->services().runLoop->now())) {
    failLater({std::string{webErrorDomain}, webProcessGoneError,
               "The pages shown here have ended their process too often."});
    return false;
  }
  applySettings();
  timeOut_ = engine_->services().runLoop->after(engine_->services().limits.pageTimeout,
                                                [this] { timeOut(); });
  return true;
}

void GtkWebView::applySettings() {
  auto* settings = native_->settings();
  webkit_settings_set_media_playback_allows_inline(settings,
                                                   allowsInlineMediaPlayback ? TRUE : FALSE);
  webkit_settings_set_media_playback_requires_user_gesture(
      settings, mediaPlaybackRequiresUserAction ? TRUE : FALSE);
}

void GtkWebView::timeOut() {
  if (!native_->stopLoading()) return;
  // A page that does not hear of it because its script loops is found by its silence.
  native_->evaluate("0", {});
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) {
    client->webViewDidFailLoad(
        *this, makeError(TransportError::timedOut, "The page did not finish loading in time."));
  }
}

void GtkWebView::stopLoading() {
  timeOut_.invalidate();
  if (native_->stopLoading())
    failLater(makeError(TransportError::cancelled, "Loading was stopped."));
}

void GtkWebView::addDocumentStartScript(const std::string& script) {
  native_->addDocumentStartScript(script);
}

void GtkWebView::evaluate(const std::string& script,
                          std::function<void(const std::string&)> completion) {
  native_->evaluate(script, completion);
}

Url GtkWebView::url() const {
  return Url::fromText(textOf(webkit_web_view_get_uri(native_->webKit())));
}

std::string GtkWebView::title() const {
  return validUtf8(textOf(webkit_web_view_get_title(native_->webKit())));
}

bool GtkWebView::isLoading() const { return native_->isLoading(); }

double GtkWebView::estimatedProgress() const {
  return webkit_web_view_get_estimated_load_progress(native_->webKit());
}

bool GtkWebView::canGoBack() const { return native_->canGoBack(); }

bool GtkWebView::canGoForward() const {
  return webkit_web_view_can_go_forward(native_->webKit()) != FALSE;
}

void GtkWebView::goBack() {
  if (canGoBack()) webkit_web_view_go_back(native_->webKit());
}

void GtkWebView::goForward() {
  if (canGoForward()) webkit_web_view_go_forward(native_->webKit());
}

void GtkWebView::reload() {
  if (beginLoad()) native_->reload();
}

void GtkWebView::layoutSubviews() {
  if (native_) native_->resize(frame().size());
}

// A page's script must not go behind the first page either, where the view is blank.
bool GtkWebView::pageShouldStart(const Navigation& navigation) {
  const bool isMainFrame = navigation.mainDocumentUrl == navigation.url;
  if (isMainFrame && navigation.type == NavigationType::backForward && !canGoBack() &&
      navigation.url.text() == blankPage) {
    native_->stayInHistory();
    return false;
  }
  const auto held = shared_from_this();
  const auto client = client_.lock();
  return !client || client->webViewShouldStartLoad(*this, navigation);
}

void GtkWebView::pageCannotShow(const Url& url) {
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) {
    client->webViewDidFailLoad(
        *this, cannotShowError("URLs with the scheme \"" + std::string{url.scheme()} +
                               "\" cannot be shown."));
  }
}

void GtkWebView::pageRefusedDocument(const std::string& reason) {
  pageFailed(cannotShowError(reason));
}

void GtkWebView::pageRefusedRequest() { timeOut_.invalidate(); }

void GtkWebView::pageStarted() {
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) client->webViewDidStartLoad(*this);
}

void GtkWebView::pageFinished() {
  timeOut_.invalidate();
  pool_->pageFinished();
  const auto held = shared_from_this();
  setReady(true);
  if (const auto client = client_.lock()) client->webViewDidFinishLoad(*this);
}

void GtkWebView::pageFailed(const Error& error) {
  timeOut_.invalidate();
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) client->webViewDidFailLoad(*this, error);
}

void GtkWebView::pageProcessEnded(const Error& reason) {
  timeOut_.invalidate();
  budget_->processEnded(engine_->services().runLoop->now());
  const auto held = shared_from_this();
  setReady(false);
  if (const auto client = client_.lock()) {
    client->webViewProcessDidTerminate(*this, reason);
  }
}

void GtkWebView::pageTapped() { recognizeTap(*this); }

void GtkWebView::failLater(Error error) {
  engine_->services().runLoop->post([weak = weak_from_this(), error = std::move(error)] {
    const auto self = std::static_pointer_cast<GtkWebView>(weak.lock());
    if (!self) return;
    if (const auto client = self->client_.lock()) client->webViewDidFailLoad(*self, error);
  });
}

void GtkWebView::setReady(bool ready) {
  if (std::exchange(ready_, ready) != ready) changed();
}

}  // namespace tavo::gtk
