#include "UserInterface/StandardsVideo/VastResourceView.h"

#include <utility>

#include <tavo/ImageView.h>

#include "Scene/Window.h"
#include "Services/ImageDecoder.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo {

std::shared_ptr<VastResourceView> VastResourceView::create(std::shared_ptr<Environment> environment,
                                                           const Rect& frame,
                                                           std::vector<VastResource> resources,
                                                           const std::string& label, Pages pages,
                                                           Events events) {
  std::shared_ptr<VastResourceView> view{new VastResourceView{
      std::move(environment), frame, std::move(resources), pages, std::move(events)}};
  view->setClipsToBounds(true);
  view->cover(label);
  return view;
}

VastResourceView::~VastResourceView() {
  if (exchange_) exchange_->cancel();
}

// The button above everything takes the clicks, also those on a film below it.
void VastResourceView::cover(const std::string& label) {
  button_ = std::make_shared<Button>(bounds());
  button_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  button_->setAccessibilityLabel(label);
  button_->setAction([this] {
    const auto held = shared_from_this();
    if (drawn_) events_.clicked();
  });
  addSubview(button_);
}

void VastResourceView::load() {
  if (!std::exchange(loads_, true)) tryNext();
}

void VastResourceView::tryNext() {
  if (page_) page_->removeFromSuperview();
  page_.reset();
  if (next_ == resources_.size()) {
    const auto held = shared_from_this();
    return events_.failed();
  }
  const VastResource& resource = resources_[next_++];
  if (resource.kind == VastResource::Kind::picture) {
    loadPicture(resource);
  } else {
    loadPage(resource);
  }
}

void VastResourceView::loadPicture(const VastResource& resource) {
  const Url url = Url::fromText(resource.content);
  if (!url.isHttp()) return tryNext();
  const Limits& limits = environment_->limits();
  HttpRequest request{.url = url};
  request.idleTimeout = limits.requestIdleTimeout;
  request.deadline = limits.requestDeadline;
  request.maximumBodyBytes = limits.pictureBytes;
  exchange_ = environment_->platform().http->send(
      std::move(request), [weak = weak_from_this()](const HttpResult& result) {
        const auto self = std::static_pointer_cast<VastResourceView>(weak.lock());
        if (self) self->received(result);
      });
}

void VastResourceView::received(const HttpResult& result) {
  exchange_.reset();
  if (result.error || !result.response) return tryNext();
  environment_->platform().images->decode(
      result.response->body, [weak = weak_from_this()](const Image& picture) {
        const auto self = std::static_pointer_cast<VastResourceView>(weak.lock());
        if (!self) return;
        if (picture.empty()) return self->tryNext();
        const auto drawing = std::make_shared<ImageView>(self->bounds());
        drawing->setAutoresizingMask(flexibleWidth | flexibleHeight);
        drawing->setContentMode(ContentMode::aspectFit);
        drawing->setImage(picture);
        self->addSubview(drawing);
        self->bringSubviewToFront(*self->button_);
        self->drawn();
      });
}

void VastResourceView::loadPage(const VastResource& resource) {
  page_ = environment_->platform().webViews->create(bounds(), {.owner = this});
  page_->setAutoresizingMask(flexibleWidth | flexibleHeight);
  page_->setOpaque(false);
  page_->setClient(std::static_pointer_cast<VastResourceView>(shared_from_this()));
  addSubview(page_);
  if (pages_ == Pages::areCovered) bringSubviewToFront(*button_);
  button_->setHidden(pages_ == Pages::takeClicks);
  if (resource.kind == VastResource::Kind::html) return page_->loadHtml(resource.content, {});
  const Url url = Url::fromText(resource.content);
  if (!url.isHttp()) return tryNext();
  page_->loadUrl(url);
}

// What a page begins with is its own affair; what a link of it opens belongs outside.
bool VastResourceView::webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) {
  const bool leaves = navigation.type == NavigationType::linkClicked ||
                      navigation.type == NavigationType::newWindow;
  if (!leaves) return true;
  const auto held = shared_from_this();
  events_.opened(navigation.url);
  return false;
}

void VastResourceView::webViewDidFinishLoad(WebView& /*webView*/) { drawn(); }

void VastResourceView::webViewDidFailLoad(WebView& /*webView*/, const Error& /*error*/) {
  if (!drawn_) tryNext();
}

void VastResourceView::webViewProcessDidTerminate(WebView& /*webView*/, const Error& /*error*/) {
  if (!drawn_) tryNext();
}

void VastResourceView::drawn() {
  drawn_ = true;
  appeared();
}

void VastResourceView::appeared() {
  if (!drawn_ || window() == nullptr || std::exchange(told_, true)) return;
  const auto held = shared_from_this();
  events_.shown();
}

// In the tree a moment later.
void VastResourceView::willMoveToSuperview(View* newSuperview) {
  if (newSuperview == nullptr) return;
  load();
  environment_->platform().runLoop->post([weak = weak_from_this()] {
    const auto self = std::static_pointer_cast<VastResourceView>(weak.lock());
    if (self) self->appeared();
  });
}

}  // namespace tavo
