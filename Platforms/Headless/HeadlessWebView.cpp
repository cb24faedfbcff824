#include "Headless/HeadlessWebView.h"

namespace tavo::headless {

HeadlessWebView::HeadlessWebView(Rect frame, std::shared_ptr<RunLoop> runLoop)
    : WebView{frame}, runLoop_{std::move(runLoop)} {
  // The markup of the page that was loaded, as an engine would serialise it.
  results_["document.documentElement.outerHTML"] = {};
}

void HeadlessWebView::startLoad() {
  loading_ = true;
  const int load = ++load_;
  runLoop_->post([weak = weak_from_this(), load] {
    const auto self = std::static_pointer_cast<HeadlessWebView>(weak.lock());
    if (!self || self->load_ != load) return;
    if (const auto client = self->client_.lock()) client->webViewDidStartLoad(*self);
    if (!self->holdLoads_ && self->load_ == load) self->finishLoad();
  });
}

void HeadlessWebView::loadHtml(const std::string& html, const Url& baseUrl) {
  html_ = html;
  baseUrl_ = baseUrl;
  url_ = baseUrl.empty() ? Url::parse(blankPage) : baseUrl;
  setResult("document.documentElement.outerHTML", html);
  startLoad();
}

void HeadlessWebView::loadUrl(const Url& url) {
  runLoop_->post([weak = weak_from_this(), url] {
    const auto self = std::static_pointer_cast<HeadlessWebView>(weak.lock());
    if (!self || !self->navigate({url, url, NavigationType::other})) return;
    self->url_ = url;
    self->startLoad();
  });
}

void HeadlessWebView::travel(int& from, int& to) {
  if (from == 0) return;
  --from;
  ++to;
  startLoad();
}

void HeadlessWebView::reload() {
  ++reloads;
  startLoad();
}

void HeadlessWebView::stopLoading() {
  if (!loading_) return;
  failLoad(makeError(TransportError::cancelled, "The load was stopped."));
}

void HeadlessWebView::addDocumentStartScript(const std::string& script) {
  documentStartScripts_.push_back(script);
}

void HeadlessWebView::evaluate(const std::string& script,
                               std::function<void(const std::string&)> completion) {
  scripts_.push_back(script);
  if (onScript) onScript(script);
  if (!completion) return;
  const auto known = results_.find(script);
  runLoop_->post(
      [completion = std::move(completion),
       result = known == results_.end() ? std::string{} : known->second] { completion(result); });
}

void HeadlessWebView::finishLoad() {
  loading_ = false;
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) client->webViewDidFinishLoad(*this);
}

void HeadlessWebView::failLoad(const Error& error) {
  loading_ = false;
  ++load_;
  runLoop_->post([weak = weak_from_this(), error] {
    const auto self = std::static_pointer_cast<HeadlessWebView>(weak.lock());
    if (!self) return;
    if (const auto client = self->client_.lock()) client->webViewDidFailLoad(*self, error);
  });
}

void HeadlessWebView::terminateProcess() {
  loading_ = false;
  ++load_;
  const auto held = shared_from_this();
  if (const auto client = client_.lock()) {
    client->webViewProcessDidTerminate(
        *this, {std::string{webErrorDomain}, webProcessGoneError, "The page's process has ended."});
  }
}

bool HeadlessWebView::navigate(const Navigation& navigation) {
  const auto client = client_.lock();
  return !client || client->webViewShouldStartLoad(*this, navigation);
}

void HeadlessWebView::setResult(const std::string& script, std::string result) {
  results_[script] = std::move(result);
}

}  // namespace tavo::headless
